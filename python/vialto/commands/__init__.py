"""The commands: a module each, which imports when it runs what it alone needs."""
