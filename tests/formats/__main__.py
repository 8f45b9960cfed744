"""Cross-checks of image files with other programs; the argument is the quillet command. A second one
picks the cases whose names hold it."""

import concurrent.futures
import os
import subprocess
import sys
import tempfile

import read
import sources
import written
from pixels import Failure


def outcome(case):
    name, check = case
    try:
        check()
        return None
    except (Failure, OSError, subprocess.TimeoutExpired) as error:
        return f"FAILED {name}: {error}"


def main():
    quillet = os.path.realpath(sys.argv[1])
    wanted = sys.argv[2] if len(sys.argv) > 2 else ""
    with tempfile.TemporaryDirectory() as folder:
        sources.make_sources(folder)
        cases = [case for group in (written, read) for case in group.cases(quillet, folder)
                 if wanted in case[0]]
        with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
            failed = [line for line in pool.map(outcome, cases) if line]
    print("\n".join(failed + [f"formats: {len(cases) - len(failed)} passed, {len(failed)} failed"]))
    return 1 if failed or not cases else 0


if __name__ == "__main__":
    sys.exit(main())
