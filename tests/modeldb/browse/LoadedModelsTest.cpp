// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include "modeldb/browse/CLoadedModels.h"

namespace {

std::string NamesOf(const std::vector<CFoundModel>& models) {
    std::string names;
    for (const CFoundModel& model : models) names += model.group + "/" + model.name + " ";
    return names;
}

class LoadedModelsTest : public testing::Test {
  protected:
    LoadedModelsTest() {
        const CSmpModelArr cars{{"Audi", 1}, {"Gro\xC3\x9F\x61uto", 2}},
            cups{{"\xC3\x84pfel", 3}, {"cup", 4}};
        models.Add("Cars", cars);
        models.Add("Cups", cups);
    }
    CLoadedModels models;
};

TEST_F(LoadedModelsTest, FindsInAnyLetterCase) {
    EXPECT_EQ(NamesOf(models.Find("AU", 10)), "Cars/Audi Cars/Gro\xC3\x9F\x61uto ");
    EXPECT_EQ(NamesOf(models.Find("\xC3\xA4p", 10)), "Cups/\xC3\x84pfel ");
    EXPECT_EQ(models.Find("u", 2).size(), 2U);
}

TEST_F(LoadedModelsTest, ForgetsAGroup) {
    models.Forget("Cars");
    EXPECT_EQ(NamesOf(models.Find("u", 10)), "Cups/cup ");
}

TEST_F(LoadedModelsTest, AppendsOnlyWhatIsNew) {
    std::vector<CFoundModel> found = models.Find("u", 10);
    AppendNew(found, {{"Cars", "Audi", 1}, {"Boats", "Tug", 9}, {"Boats", "Tug", 9}});
    EXPECT_EQ(NamesOf(found), "Cars/Audi Cars/Gro\xC3\x9F\x61uto Cups/cup Boats/Tug ");
}

}  // namespace
