"""Appends to a file what a command uses: seconds of processor time, peak memory in KB.

    usage.py FILE COMMAND...
"""

import resource
import subprocess
import sys

subprocess.run(sys.argv[2:], check=True)
usage = resource.getrusage(resource.RUSAGE_CHILDREN)
with open(sys.argv[1], "a") as file:
    print(f"{usage.ru_utime + usage.ru_stime:.6f} {usage.ru_maxrss}", file=file)
