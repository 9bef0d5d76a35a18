// Nothing but the precompiled header of the test programs.
