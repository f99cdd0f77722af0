// SPDX-License-Identifier: MIT
#include "view/CMotion.h"

#include <gtest/gtest.h>

#include <sstream>
#include <string>

#include "row_name.h"

namespace {

struct CMotionCase {
    const char* name;
    const char* steps;  ///< of Do
    /** "moves" or "rests", when the full picture is due, and whether a quick one is to come. */
    const char* state;
};

/** A number lets so many milliseconds pass. */
void Do(CMotion& motion, const std::string& what, CMotion::CTime& now) {
    if (what == "move") return motion.Moved(now);
    if (what == "release") return motion.Released(now);
    if (what == "run" || what == "stop") return motion.SetRunning(what == "run");
    if (what == "whole") return motion.Drawn(EDrawn::Whole, now);
    if (what == "less") return motion.Drawn(EDrawn::Reduced, now);
    if (what == "interrupted") return motion.Drawn(EDrawn::Interrupted, now);
    now += std::chrono::milliseconds(std::stoi(what));
}

class CMotionTest : public testing::TestWithParam<CMotionCase> {};

TEST_P(CMotionTest, KnowsWhenTheFullPictureIsDue) {
    CMotion motion;
    CMotion::CTime now{std::chrono::hours(1)};
    std::istringstream steps(GetParam().steps);
    for (std::string what; steps >> what;) Do(motion, what, now);
    const auto due = motion.DueIn(now);
    EXPECT_EQ(std::string(motion.IsMoving(now) ? "moves" : "rests") +
                  (due ? " due " + std::to_string(due->count()) : "") + (motion.IsToBeShown() ? " late" : ""),
              GetParam().state);
}

const CMotionCase kMotions[] = {
    {"NothingAtFirst", "", "rests"},
    {"StillFrameIsAllThereIs", "whole 500", "rests"},
    {"MovingPictureOwesTheFullOne", "move less 20", "moves due 30"},
    {"EachMovementWaitsAnew", "move less 40 move less 40", "moves due 10"},
    {"HeldStill", "move less 50", "rests due 0"},
    {"NotDrawnForLong", "move less 5 move 90", "rests due 0 late"},
    {"NotDrawnBeforeTheRelease", "move less 5 move 90 release", "rests due 0"},
    {"ReleasedAtOnce", "move less 5 release", "rests due 0"},
    {"SmallSceneIsWholeWhileItMoves", "move whole 20", "moves"},
    {"ShownInFull", "move less 60 whole 10", "rests"},
    {"PressInterruptsIt", "move less 60 interrupted 10", "moves due 40"},
    {"PressThatMovesNothing", "interrupted 70", "rests due 0"},
    {"TurnsByItself", "run less 500", "moves"},
    {"StopsTurning", "run less 500 stop", "rests due 0"},
    {"StopsTurningAfterAWholePicture", "run whole 500 stop", "rests"},
};
INSTANTIATE_TEST_SUITE_P(Motions, CMotionTest, testing::ValuesIn(kMotions), kRowName);

}  // namespace
