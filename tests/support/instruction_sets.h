// Runs a check with each of the instruction sets among which the program chooses at run time.
#pragma once

#include <gtest/gtest.h>
#include <hwy/targets.h>

namespace pintle {

/// Runs `check` with every set of instructions that this machine has, and with none at all.
template <typename Check>
void withEachInstructionSet(Check check) {
    for (auto left = hwy::SupportedTargets() | HWY_SCALAR; left != 0; left &= left - 1) {
        const auto target = left & -left;
        hwy::SetSupportedTargetsForTest(target);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
        SCOPED_TRACE(hwy::TargetName(target));
        check();
    }
    hwy::SetSupportedTargetsForTest(0);
    hwy::GetChosenTarget().Update(hwy::SupportedTargets());
}

}  // namespace pintle
