"""What the generators of the build share: the line form of data files, and the writing of what is made."""
