"""What the end-to-end cases are written with: a session (display and buses), a cage, the program in it, a screen
reader that drives it, and the disk as it really is."""
