"""Where a comparison's text goes."""

import pathlib
import sys


def publish(name, text, reached):
    """Into this folder, or with --quick onto the screen; an error where a goal is missed."""
    if "--quick" in sys.argv:
        print(text)
    else:
        pathlib.Path(__file__).with_name(name).write_text(text, encoding="utf-8")
    if not reached:
        sys.exit(f"{name}: a goal is missed")
