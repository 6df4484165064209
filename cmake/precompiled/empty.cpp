// A precompiled header needs a file to belong to.
