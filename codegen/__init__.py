"""Generates everything derived from data/: C++ tables and classes, MIB modules, monitoring files, references."""
