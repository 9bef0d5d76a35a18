// Nothing but the precompiled header; see NAPAMMUL_PRECOMPILE.
