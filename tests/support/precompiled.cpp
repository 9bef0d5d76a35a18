// Only compiles the precompiled header of the test programs.
