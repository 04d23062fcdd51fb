"""Generates everything that follows from data/: C++ tables and classes, MIB modules, monitoring files, references."""
