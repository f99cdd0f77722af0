// SPDX-License-Identifier: MIT
#include "programs/upload_prepare/CUpload.h"

#include <gtest/gtest.h>

#include <thread>

#include "files/CTestFolder.h"
#include "programs/upload_prepare/CRclone.h"
#include "programs/upload_prepare/rclone_output.h"

namespace fs = std::filesystem;
using namespace std::chrono_literals;
using EState = CUpload::EState;

namespace {

/** rclone itself, with remotes that are folders of this test. */
class CUploadTest : public testing::Test {
  protected:
    CUploadTest() {
        fs::create_directories(upload / "model");
        (void)upload.Add("index.html", "landing");
        (void)upload.Add("model/big.bin", std::string(400'000, 'x'));
        setup.moreArguments = {
            "--config", folder.Add("rclone.conf", "[My Drive]\ntype = alias\nremote = " + drive.Path() +
                                                      "\n[other]\ntype = local\n")};
        setup.remoteType = "alias";
    }
    [[nodiscard]] CUpload Make(const std::string& name = "chess 1") const {
        return {setup, upload.Path(), name};
    }
    /** Polls until the upload has left a state. */
    static EState Leave(CUpload& upload, EState state) {
        for (int i = 0; i < 1500 && upload.State() == state; ++i) {
            (void)upload.Poll();
            std::this_thread::sleep_for(10ms);
        }
        return upload.State();
    }
    /** Uploads as soon as that may be. */
    static void Start(CUpload& upload, const std::string& drive = "My Drive", bool forAnybody = false) {
        ASSERT_EQ(Leave(upload, EState::Looking), EState::Ready);
        upload.Start(drive, forAnybody);
    }
    static void ExpectDone(CUpload& upload) {
        EXPECT_EQ(Leave(upload, EState::Copying), EState::Linking);
        EXPECT_EQ(Leave(upload, EState::Linking), EState::Done);
    }
    /** A program in rclone's place. */
    void Replace(const std::string& script) {
        setup.program = folder.Add("fake", "#!/bin/sh\n" + script);
        fs::permissions(setup.program, fs::perms::owner_all);
    }
    [[nodiscard]] std::string Uploaded(const std::string& file) const {
        return CTestFolder::TextOf(drive / ("Orbivue/chess 1/" + file));
    }

    const CTestFolder folder, upload, drive;
    CRcloneSetup setup;
};

}  // namespace

TEST_F(CUploadTest, CopiesTheFolderOnceTold) {
    CUpload run = Make();
    ASSERT_EQ(Leave(run, EState::Looking), EState::Ready);
    EXPECT_EQ(run.Remotes(), std::vector<std::string>{"My Drive"});
    EXPECT_EQ(drive.Count(), 0u);  // nothing has left
    run.Start("other", false);     // none of those that count
    EXPECT_EQ(run.State(), EState::Ready);
    run.Start("My Drive", true);
    ExpectDone(run);
    EXPECT_EQ(Uploaded("index.html"), "landing");
    EXPECT_EQ(Uploaded("model/big.bin").size(), 400'000u);
    EXPECT_EQ(run.Progress().files, 2u);
    EXPECT_FALSE(run.IsForAnybody());  // a folder has no link, which rclone says
    EXPECT_EQ(run.Address(), "");
    ASSERT_FALSE(run.Errors().empty());
    EXPECT_NE(run.Errors().front().find("doesn't support public links"), std::string::npos);
}

TEST_F(CUploadTest, TellsOfNoDrive) {
    setup.remoteType = "drive";
    setup.moreArguments.back() = folder / "no.conf";
    CUpload none = Make();
    EXPECT_EQ(Leave(none, EState::Looking), EState::NoDrive);
    EXPECT_EQ(none.Errors(), std::vector<std::string>());
    EXPECT_EQ(none.WhyNoDrive(), CUpload::ENoDrive::NoRemote);
    setup.program = "orbivue-no-such-program";
    CUpload missing = Make();
    EXPECT_EQ(missing.State(), EState::NoDrive);
    EXPECT_EQ(missing.WhyNoDrive(), CUpload::ENoDrive::NotInstalled);
    Replace("echo 'all is broken' >&2; exit 1\n");
    CUpload broken = Make();
    EXPECT_EQ(Leave(broken, EState::Looking), EState::NoDrive);
    EXPECT_EQ(broken.WhyNoDrive(), CUpload::ENoDrive::Failed);
    EXPECT_EQ(broken.Errors(), std::vector<std::string>{"all is broken"});
}

TEST_F(CUploadTest, AsksForThePasswordOfTheConfiguration) {
    setup.moreArguments.back() =
        folder.Add("locked.conf", "# Encrypted rclone configuration File\n\nRCLONE_ENCRYPT_V0:\n" +
                                      std::string(200, 'A') + "\n");
    CUpload run = Make();
    ASSERT_EQ(Leave(run, EState::Looking), EState::NoDrive);
    EXPECT_EQ(run.WhyNoDrive(), CUpload::ENoDrive::Locked);
    run.Unlock("wrong");
    ASSERT_EQ(Leave(run, EState::Looking), EState::NoDrive);
    EXPECT_EQ(run.WhyNoDrive(), CUpload::ENoDrive::Locked);
    Replace(
        "[ \"$RCLONE_CONFIG_PASS\" = 'a b' ] || { echo RCLONE_CONFIG_PASS >&2; exit 1; }; echo 'x: alias'\n");
    CUpload other = Make();
    ASSERT_EQ(Leave(other, EState::Looking), EState::NoDrive);
    other.Unlock("a b");
    EXPECT_EQ(Leave(other, EState::Looking), EState::Ready);
}

TEST_F(CUploadTest, CanBeCancelled) {
    constexpr std::size_t kBytes = 8'000'000;
    (void)upload.Add("model/big.bin", std::string(kBytes, 'x'));
    setup.moreArguments.insert(setup.moreArguments.end(), {"--bwlimit", "500k"});
    CUpload run = Make();
    Start(run);
    // rclone counts them while it lists the folder.
    for (int i = 0; i < 500 && run.Progress().totalFiles < 2; ++i) {
        (void)run.Poll();
        std::this_thread::sleep_for(10ms);
    }
    EXPECT_EQ(run.Progress().totalFiles, 2u);
    EXPECT_EQ(run.State(), EState::Copying);
    run.Cancel();
    EXPECT_EQ(run.State(), EState::Cancelled);
    EXPECT_LT(Uploaded("model/big.bin").size(), kBytes);
    EXPECT_FALSE(run.Poll());
}

TEST_F(CUploadTest, SaysWhatFails) {
    (void)drive.Add("Orbivue", "a file in the folder's place");
    CUpload run = Make();
    Start(run);
    EXPECT_EQ(Leave(run, EState::Copying), EState::Failed);
    EXPECT_FALSE(run.Errors().empty());
    fs::remove(drive / "Orbivue");
    run.Start("My Drive", false);
    ExpectDone(run);
}

TEST_F(CUploadTest, GivesTheAddressThatTheDriveTells) {
    Replace(
        "case $1 in listremotes) echo 'd: alias';; link) echo https://drive.google.com/open?id=1;;\n"
        "lsjson) echo '[{\"Name\":\"chess 1\",\"ID\":\"abc\"}]';; esac\n");
    for (const bool anybody : {true, false}) {
        CUpload run = Make();
        Start(run, "d", anybody);
        ExpectDone(run);
        EXPECT_EQ(run.IsForAnybody(), anybody);
        EXPECT_EQ(run.Address(), anybody ? "https://drive.google.com/open?id=1"
                                         : "https://drive.google.com/drive/folders/abc");
    }
}

TEST_F(CUploadTest, TakesNoNameForAnOption) {
    Replace("case $1 in listremotes) echo 'd: alias';; *) for a; do echo \"$a\"; done >>'" +
            (folder / "told") + "';; esac\n");
    CUpload run = Make("--config=x `id`");
    Start(run, "d");
    (void)Leave(run, EState::Copying);
    const std::string told = CTestFolder::TextOf(folder / "told");
    EXPECT_NE(told.find("\n--\n" + upload.Path() + "\nd:Orbivue/--config=x `id`\n"), std::string::npos)
        << told;
}

TEST_F(CUploadTest, OutlivesAProgramThatNeverStopsTalking) {
    // Lines without end, a line without end, and an output without end.
    for (const char* flood : {"yes '{\"stats\":{}}' >&2", "tr '\\0' x </dev/zero >&2", "yes"}) {
        Replace(std::string("exec ") + flood + "\n");
        CRclone run = CRclone::Start(setup, {}, {}, 10s, 300ms).Value();
        const auto begun = std::chrono::steady_clock::now();
        std::size_t most = 0;
        while (!run.Poll()) most = std::max(most, run.TakeErrorLines().size());
        EXPECT_TRUE(run.WasSilent()) << flood;
        EXPECT_LE(most, 200u) << flood;
        EXPECT_LT(run.Output().size(), 8u << 20) << flood;
        EXPECT_LT(std::chrono::steady_clock::now() - begun, 8s) << flood;
        for (const std::string& line : run.TakeErrorLines())
            EXPECT_LE(rclone_output::ReadLine(line).error.size(), 400u) << flood;
    }
}
