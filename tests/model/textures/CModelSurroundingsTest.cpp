// SPDX-License-Identifier: MIT
#include "model/textures/CModelSurroundings.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <cstdlib>

#include "files/CTestFolder.h"
#include "model/textures/CTextureLocator.h"
#include "row_name.h"

namespace fs = std::filesystem;

namespace {

struct CCase {
    const char* name;
    std::string model;
    std::vector<std::string> files;  ///< "a -> b" is a link a to b, "a/" a folder that everybody may write to
    std::string reference;
    bool isFound = false;  ///< the last of the files; otherwise nothing may be
    std::string home = "home";
};

constexpr bool kFound = true, kNothing = false;

const CCase kCases[] = {
    {"AboveInDownloads", "home/Downloads/car/c.3ds", {"home/Downloads/x.png"}, "x.png"},
    {"AboveInHome", "home/Downloads/car/c.3ds", {"home/x.png"}, "x.png"},
    {"TheDesktopsPictures", "home/Downloads/car/c.3ds", {"home/Pictures/x.png"}, "x.png"},
    {"PictureFolderInDownloads", "home/Downloads/car/c.3ds", {"home/Downloads/maps/x.png"}, "x.png"},
    {"PictureFolderInHome", "home/jobs/c.3ds", {"home/textures/x.png"}, "x.png"},
    {"BelowInDownloads", "home/Downloads/car/c.3ds", {"home/Downloads/car/a/x.png"}, "x.png", kFound},
    {"BesideInDownloads", "home/Downloads/c.3ds", {"home/Downloads/x.png"}, "X.PNG", kFound},
    {"NoOtherFolderInDownloads", "home/Downloads/c.3ds", {"home/Downloads/a/x.png"}, "a/x.png"},
    {"NoPictureFolderInDownloads", "home/Downloads/c.3ds", {"home/Downloads/images/x.png"}, "x.png"},
    {"BesideInHome", "home/c.3ds", {"home/x.png"}, "x.png", kFound},
    {"NoPicturesOfHome", "home/c.3ds", {"home/Pictures/x.png"}, "Pictures\\x.png"},
    {"ByUserDirs", "home/Bilder/car/c.3ds", {"home/Bilder/maps/x.png"}, "x.png"},
    {"EnglishNamesStill", "home/Pictures/car/c.3ds", {"home/Pictures/maps/x.png"}, "x.png"},
    {"ProjectInHome", "home/jobs/models/c.3ds", {"home/jobs/textures/x.png"}, "x.png", kFound},
    {"HomeBelowTheModel", "c.3ds", {"home/x.png"}, "x.png"},
    {"HomeOnTheReferencesWay", "c.3ds", {"home/x.png"}, "home/x.png"},
    {"RelativeHome", "home/Downloads/car/c.3ds", {"home/Downloads/maps/x.png"}, "x.png", kNothing, "./home"},
    {"NotAboveARepository", "a/b/m/c.3ds", {"a/b/.git", "a/maps/x.png"}, "x.png"},
    {"AsFarAsARepository", "a/b/m/c.3ds", {"a/b/.git", "a/b/maps/x.png"}, "x.png", kFound},
    {"NotAFolderForEverybody", "a/b/c.3ds", {"a/", "a/maps/x.png"}, "x.png"},
    {"FourFoldersUp", "1/2/3/4/c.3ds", {"maps/x.png"}, "x.png", kFound},
    {"NotFiveFoldersUp", "1/2/3/4/5/c.3ds", {"maps/x.png"}, "x.png"},
    {"LinkOutside", "m/c.3ds", {"home/x.png", "m/x.png -> ../home/x.png"}, "x.png"},
    {"LinkAbove", "a/m/c.3ds", {"a/y.png", "a/m/x.png -> ../y.png"}, "x.png"},
    {"LinkWithin", "m/c.3ds", {"m/x.png -> deep/er/y.png", "m/deep/er/y.png"}, "x.png", kFound},
    {"LinkedFolderOutside", "m/c.3ds", {"home/Pictures/x.png", "m/maps -> ../home/Pictures"}, "maps/x.png"},
    {"LinkedPictureFolder",
     "g/m/c.3ds",
     {"g/m/maps -> ../textures", "g/textures/x.png"},
     "MAPS/x.png",
     kFound},
    {"LinkedFolderInARing", "m/c.3ds", {"m/a/y.png", "m/a/a -> .."}, "a/a/a/a/a/x.png"},
    {"LinkedDownloads", "dl/car/c.3ds", {"home/Downloads -> ../dl", "dl/maps/x.png"}, "x.png"},
    {"OpenedThroughALink",
     "link/c.3ds",
     {"home/Downloads/car/y.png", "link -> home/Downloads/car", "home/Downloads/x.png"},
     "x.png"},
    {"DanglingLink", "m/c.3ds", {"m/x.png -> nowhere"}, "x.png"},
    {"Device", "m/c.3ds", {"m/x.png -> /dev/zero"}, "x.png"},
};

class Surroundings : public testing::TestWithParam<CCase> {
  protected:
    Surroundings() : m_homeBefore(std::getenv("HOME")), m_wasAt(fs::current_path()) {
        fs::current_path(m_folder / "");
        ::setenv("HOME",
                 GetParam().home.starts_with('.') ? GetParam().home.c_str() : (m_folder / "home").c_str(), 1);
    }
    ~Surroundings() override {
        fs::current_path(m_wasAt);
        ::setenv("HOME", m_homeBefore.c_str(), 1);
    }
    void Make(const std::string& what) const {
        const std::size_t arrow = what.find(" -> ");
        const fs::path path = m_folder / what.substr(0, arrow);
        fs::create_directories(path.parent_path());
        if (what.ends_with('/')) {
            ASSERT_EQ(::chmod(path.c_str(), 01777), 0);
        } else if (arrow != what.npos) {
            fs::create_symlink(what.substr(arrow + 4), path);
        } else {
            (void)m_folder.Add(what, "picture");
        }
    }

    CTestFolder m_folder;

  private:
    std::string m_homeBefore;
    fs::path m_wasAt;
};

TEST_P(Surroundings, HoldNothingThatIsNotTheModels) {
    Make("home/.config/user-dirs.dirs");
    (void)m_folder.Add("home/.config/user-dirs.dirs", "# x\nXDG_PICTURES_DIR=\"$HOME/Bilder\"\n");
    for (const std::string& what : GetParam().files) Make(what);
    Make(GetParam().model);
    const std::string last = GetParam().files.back(), expected = last.substr(0, last.find(" -> ")),
                      own = GetParam().model.substr(0, GetParam().model.rfind('/') + 1);
    for (const std::string& model : {m_folder / GetParam().model, GetParam().model}) {
        const auto hit = CTextureLocator::BesideModel(model).Find(GetParam().reference);
        ASSERT_EQ(hit ? hit->foundAt : "", GetParam().isFound ? m_folder / expected : "");
        EXPECT_EQ(hit && hit->outsideModelFolder, hit && !expected.starts_with(own));
    }
}
INSTANTIATE_TEST_SUITE_P(CModelSurroundings, Surroundings, testing::ValuesIn(kCases), kRowName);

}  // namespace
