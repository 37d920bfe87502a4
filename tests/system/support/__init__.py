"""What the tests of the whole program share."""
import os

# Servers lie where root alone looks by itself.
os.environ["PATH"] += os.pathsep + os.pathsep.join(("/usr/local/sbin", "/usr/sbin", "/sbin"))
