"""What the language accepts and a person rarely means: found, and told."""

from __future__ import annotations

import re
import warnings
from typing import Any, List, Mapping, Optional, Tuple

from . import _core
from ._errors import FormulaError, FormulaWarning, Position, Told, Warning

_WRONG_KIND = 22
# A text, or what may be a name: whatever ends at a space or an operator.
_PARTS = re.compile(r'"[^"]*"?|[^ +\-*/^()!,]+')


def position_of(position: Any) -> Optional[Position]:
    return None if position is None else Position(*position)


def found(prepared: _core.Prepared, text: str, kinds: Mapping[str, str]) -> List[Warning]:
    """By position. The checker knows a name for a number; for a name of texts a text is put in."""
    list_ = [_warning(told) for told in prepared.warnings()]
    texts = {name for name, kind in kinds.items() if kind == "text"}
    if texts:
        list_ += [told for told in _of_texts(text, texts) if told not in list_]
    return sorted(list_, key=lambda told: told.position.byte if told.position else 0)


def _warning(told: Told) -> Warning:
    _, reason, message, english, position, _ = told
    return Warning(reason, message, english, position_of(position))


def _of_texts(text: str, names: "set[str]") -> List[Warning]:
    pieces: List[str] = []
    moved: List[Tuple[int, int]] = []  # where a text ends there, and how much longer a name was
    at = size = 0
    for part in _PARTS.finditer(text):
        if part.group() not in names:
            continue
        before = text[at : part.start()]
        pieces += (before, '""')
        size += len(before) + 2
        moved.append((size, part.end() - part.start() - 2))
        at = part.end()
    try:
        told = _core.prepare("".join(pieces) + text[at:], {}).warnings()
    except FormulaError:  # too long now
        return []

    def placed(position: Position) -> Position:
        character = position.character
        character += sum(more for end, more in moved if end <= position.character)
        byte = len(text[:character].encode("utf-8", "surrogatepass"))
        return position._replace(byte=byte, character=character)

    return [
        one._replace(position=placed(one.position) if one.position else None)
        for one in map(_warning, told)
        if one.reason == _WRONG_KIND
    ]


def tell(text: str, list_: List[Warning], strict: bool, column: Optional[str], level: int) -> None:
    """Once for a formula; as an error where that is wanted."""
    if not list_:
        return
    first = list_[0]
    if strict:
        raise FormulaError(
            first.english,
            message=first.message,
            reason=first.reason,
            position=first.position,
            column=column,
        )
    place = "" if first.position is None else f", at character {first.position.character + 1}"
    more = "" if len(list_) == 1 else f" (and {len(list_) - 1} more)"
    of = text if column is None else f"{column}: {text}"
    warnings.warn(FormulaWarning(f"{of}: {first.english}{place}{more}"), stacklevel=level + 1)
