// Runs a check once per Highway target compiled into the library and
// supported by this processor, with that target chosen for the vector entries.
#ifndef ORVIK_TEST_VECTOR_TARGETS_H
#define ORVIK_TEST_VECTOR_TARGETS_H

#include <functional>
#include <string>

// `check` receives the target's name; returns how many targets ran.
int forEachVectorTarget(const std::function<void(const std::string& target)>& check);

#endif
