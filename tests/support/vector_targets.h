// Runs a check once per Highway target compiled into the library and
// supported by this processor, with that target chosen for the vector
// kernels; and points the exported entries at one target or at the portable
// kernels.
#ifndef ORVIK_TEST_VECTOR_TARGETS_H
#define ORVIK_TEST_VECTOR_TARGETS_H

#include <stdint.h>

#include <functional>
#include <string>
#include <vector>

// `check` receives the target's name; returns how many targets ran.
int forEachVectorTarget(const std::function<void(const std::string& target)>& check);

// The usable targets, best first.
std::vector<int64_t> vectorTargets();
std::string targetName(int64_t target);

// The entries run their portable kernels (the portable-only mode).
void entriesRunPortable();
// The entries run the vector kernels of `target`, one of vectorTargets().
void entriesRunVectorTarget(int64_t target);
// The performance mode on the best target, as after a plain mode change.
void entriesRunDefault();

#endif
