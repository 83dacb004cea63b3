"""Appends to a file what a command uses: seconds of processor time, peak memory in KB.

    usage.py FILE COMMAND...
"""

import os
import sys

# Started like this, a process has nothing of ours on its account.
process = os.posix_spawnp(sys.argv[2], sys.argv[2:], os.environ)
_, status, usage = os.wait4(process, 0)
if status != 0:
    sys.exit(f"{sys.argv[2]} failed")
with open(sys.argv[1], "a") as file:
    print(f"{usage.ru_utime + usage.ru_stime:.6f} {usage.ru_maxrss}", file=file)
