"""One writer per kind of generated file; each takes a checked model."""
