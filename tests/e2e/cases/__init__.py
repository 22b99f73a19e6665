"""The cases. Every class here that derives from Case is a test of its own in CTest."""
