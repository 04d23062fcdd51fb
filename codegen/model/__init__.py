"""The meaning of the data files, and every check on them."""
