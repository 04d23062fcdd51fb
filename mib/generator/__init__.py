"""Makes the MIB modules, and a page for people, from the data of the MIB store."""
