// Fixture of tests that call entries: they need the function tables filled,
// and a test that turns on the log property leaves it off for the next one.
#ifndef ORVIK_TEST_ENTRY_TEST_H
#define ORVIK_TEST_ENTRY_TEST_H

#include <gtest/gtest.h>
#include <stdlib.h>

#include "orvik.h"

class EntryTest : public ::testing::Test {
 protected:
  void SetUp() override { ASSERT_EQ(ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE), 0); }
  void TearDown() override {
    unsetenv("RUNTIME_ORVIK_LOG");
    ovkSetOperationMode(ORVIK_OP_CPU_PERFORMANCE);
  }
};

#endif
