// SPDX-License-Identifier: MIT
#include <gtest/gtest.h>

#include <lib3ds/file.h>
#include <lib3ds/material.h>

#include <cstring>
#include <filesystem>

#include "files/CTestFolder.h"
#include "model/save/picture_copies.h"
#include "model/scene/CScene.h"
#include "model/textures/CLib3dsMatUtil.h"
#include "scene_builder/CSceneBuilder.h"
#include "scene_builder/shapes.h"

namespace {

/** A model with a picture of its own, and a folder that it was saved into. */
class PictureCopiesTest : public testing::Test {
  protected:
    PictureCopiesTest() {
        std::filesystem::create_directories(from / "model");
        std::filesystem::create_directories(to / "saved");
        (void)from.Add("model/wood.png", "a picture");
        m_locator = CTextureLocator::BesideModel(from / "model/chair.3ds");
        CMaterialValues values;
        values.texture = "WOOD.JPG";  // as a file that was saved once has it
        m_scene.AddMaterial("Wood", values);
        CShape box = shapes::Box({1, 1, 1});
        box.materials = {"Wood"};
        m_scene.AddPart("Box", box, nullptr, {0, 0, 0});
        m_known = CTexturesOfScene(&m_scene.File(), m_locator);
    }
    [[nodiscard]] std::vector<std::string> Missing() {
        std::vector<std::string> names;
        for (const CImageDataText& picture :
             picture_copies::MissingAt(&m_scene.File(), to / "saved/chair.3ds"))
            names.push_back(picture.name);
        return names;
    }
    [[nodiscard]] std::vector<std::string> Copy() {
        return picture_copies::CopyInto(to / "saved",
                                        picture_copies::MissingAt(&m_scene.File(), to / "saved/chair.3ds"));
    }

    CTestFolder from, to;
    CSceneBuilder m_scene;
    CTextureLocator m_locator;
    CTexturesOfScene m_known;
};

TEST_F(PictureCopiesTest, CopiesWhatWouldNotBeFound) {
    EXPECT_EQ(Missing(), std::vector<std::string>{"WOOD.png"});
    EXPECT_TRUE(Copy().empty());
    EXPECT_EQ(CTestFolder::TextOf(to / "saved/WOOD.png"), "a picture");
    EXPECT_TRUE(Missing().empty());
}

TEST_F(PictureCopiesTest, KeepsPicturesOfOneNameApart) {
    std::filesystem::create_directory(from / "model/old");
    (void)from.Add("model/old/wood.png", "another");
    CSceneBuilder::SetMap(m_scene.File().materials->bump_map, "OLD\\wood.png");
    EXPECT_EQ(Missing(), (std::vector<std::string>{"WOOD.png", "OLD/wood.png"}));
    std::filesystem::create_symlink(from / "model", to / "saved/OLD");
    EXPECT_EQ(Copy(), std::vector<std::string>{"OLD/wood.png"}) << "not through a link";
    std::filesystem::remove(to / "saved/OLD");
    EXPECT_TRUE(Copy().empty());
    EXPECT_EQ(CTestFolder::TextOf(to / "saved/OLD/wood.png"), "another");
    EXPECT_TRUE(Missing().empty());
}

TEST_F(PictureCopiesTest, OverwritesNothing) {
    (void)to.Add("victim", "keep me");
    for (const char* target : {"elsewhere", "victim"}) {
        std::filesystem::create_symlink(to / target, to / "saved/WOOD.png");
        EXPECT_EQ(Copy(), std::vector<std::string>{"WOOD.png"}) << target;
        EXPECT_FALSE(std::filesystem::exists(to / "elsewhere"));
        EXPECT_EQ(CTestFolder::TextOf(to / "victim"), "keep me");
        std::filesystem::remove(to / "saved/WOOD.png");
    }
}

}  // namespace
