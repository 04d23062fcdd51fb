"""Makes the constant tables of the enumerations from data/enumerations."""
