/* Stands in for the platform override library in test_platform_opt. */
__attribute__((visibility("default"))) int ovkOverrideFixtureAnswer(void) { return 42; }
