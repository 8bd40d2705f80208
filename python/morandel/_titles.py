"""Columns by the names that formulas have for their titles."""

from __future__ import annotations

import difflib
import re
from typing import Any


def name_of(title: Any) -> str:
    """The title with "_" for each character that no name has."""
    return re.sub(r"[^0-9A-Za-z\u0080-\U0010ffff]", "_", str(title).strip())


def check(columns: Any) -> None:
    if getattr(columns, "nlevels", 1) > 1:
        raise ValueError("df: the columns have titles of several levels; one is needed")


def find(name: str, columns: Any) -> Any:
    """The title that a name stands for. Throws KeyError."""
    if name in columns:
        return name
    for wanted in (name, name[1:] if name.startswith("_") else name):
        titles = [title for title in columns if wanted and name_of(title) == wanted]
        # By type and text, since NaN and NA cannot be compared.
        others = list({(type(title), str(title)): title for title in titles})
        if len(others) > 1:
            raise KeyError(f"'{name}' could be the column '{others[0][1]}' or '{others[1][1]}'")
        if titles:
            return titles[0]
    close = difflib.get_close_matches(name, [str(title) for title in columns], 1)
    advice = f"; did you mean {close[0]}?" if close else ""
    raise KeyError(f"there is no column '{name}'{advice}")


def has(name: str, columns: Any) -> bool:
    """Whether the name stands for a title."""
    try:
        find(name, columns)
    except KeyError:
        return False
    return True
