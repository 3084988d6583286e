// There has to be a source for what is included to be compiled with.
