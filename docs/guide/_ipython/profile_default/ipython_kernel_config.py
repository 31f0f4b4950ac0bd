"""Keeps a kernel's remarks on its own transport out of the log."""

c = get_config()  # noqa: F821
c.IPKernelApp.log_level = "ERROR"
