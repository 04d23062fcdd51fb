"""Makes the files by which monitors watch the array, from the data of the MIB store."""
