"""What the simulated array knows of the daemon, made from the daemon's own data."""
