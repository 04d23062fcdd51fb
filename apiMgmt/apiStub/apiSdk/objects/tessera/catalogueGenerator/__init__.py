"""Makes the classes of the array's objects from data/objects and data/methodObjects.def."""
