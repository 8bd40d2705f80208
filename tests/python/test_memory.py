"""Memory that runs out."""

import os
import pathlib
import subprocess
import sys


def test_whichever_allocation_fails_the_package_goes_on():
    preloaded = os.environ["MORANDEL_FAILING_NEW"]
    done = subprocess.run(
        [sys.executable, pathlib.Path(__file__).with_name("memory.py"), preloaded],
        env=os.environ | {"LD_PRELOAD": preloaded},
        capture_output=True,
        text=True,
    )
    assert done.returncode == 0, done.stdout + done.stderr
