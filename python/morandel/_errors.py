"""What is wrong with a formula or with a row, and where."""

from __future__ import annotations

from numbers import Integral
from typing import Any, Hashable, NamedTuple, Optional, Tuple

# Number, reason, Chinese, English, position, place of a name: as the core tells it.
Told = Tuple[int, int, str, str, Optional[Tuple[int, int, int, int]], int]


class Position(NamedTuple):
    """Where something is in a formula, counted from 0, and how long it is."""

    byte: int
    character: int
    bytes: int
    characters: int


class FormulaError(ValueError):
    """A formula that is refused, or that fails for its values.

    >>> import morandel
    >>> try:
    ...     morandel.evaluate("1 / (count - 3)", count=3)
    ... except morandel.FormulaError as error:
    ...     print(error.number, error.english, error.message, error.position.character)
    3 division by zero, or by a number too close to it 存在太小的分母(为零)！ 2
    """

    number: int
    """Of the table of errors; -1 for what it has no number for."""
    reason: int
    """MORANDEL_REASON_... of morandel/c.h, for what has no number."""
    message: str
    """In Chinese."""
    english: str
    position: Optional[Position]
    """The token of the formula; where ``name`` is one, the character of its value."""
    name: Optional[str]
    """The name whose value it is about."""
    row: Optional[int]
    """From 0, in the columns that were given."""
    label: Optional[Hashable]
    """The row's label in the index of a DataFrame."""
    column: Optional[str]
    """The new column that :func:`morandel.add` was to compute."""
    origin: Optional[str]
    """Where the row is from, see :func:`morandel.add`."""

    def __init__(
        self,
        english: str,
        *,
        message: str = "",
        number: int = -1,
        reason: int = 0,
        position: Optional[Position] = None,
        name: Optional[str] = None,
        row: Optional[int] = None,
        label: Optional[Hashable] = None,
        column: Optional[str] = None,
        origin: Optional[str] = None,
    ) -> None:
        super().__init__(english)
        self.english = english
        self.message = message
        self.number = number
        self.reason = reason
        self.position = position
        self.name = name
        self.row = row
        self.label = label
        self.column = column
        self.origin = origin

    @classmethod
    def _of(cls, told: Told, names: Tuple[str, ...] = (), row: Optional[int] = None) -> FormulaError:
        number, reason, message, english, position, place = told
        return cls(
            english,
            message=message,
            number=number,
            reason=reason,
            position=None if position is None else Position(*position),
            name=names[place] if 0 <= place < len(names) else None,
            row=row,
        )

    def __str__(self) -> str:
        text = self.english
        if self.number >= 0:
            text += f" (error {self.number})"
        if self.name is not None and not text.startswith(f"{self.name}: "):
            text += f", value of {self.name}"
        if self.position is not None:
            text += f", at character {self.position.character + 1}"
        if self.row is not None:
            text += f", row {self.row}"
            # The row's number may be a label of NumPy's; others cannot all be compared.
            is_number = isinstance(self.label, Integral) and not isinstance(self.label, bool)
            if self.label is not None and not (is_number and self.label == self.row):
                text += f" (index {self.label!r})"
        if self.origin is not None:
            text += f" of {self.origin}"
        return text if self.column is None else f"{self.column}: {text}"

    def __reduce__(self) -> Any:
        return _rebuilt, (type(self), self.english, self.__dict__)


def named_error(problem: Exception, text: str) -> Exception:
    """Of the same kind, about the same row; others of Python's own take more than a text."""
    named = TypeError(text) if isinstance(problem, TypeError) else ValueError(text)
    named.__dict__.update(vars(problem))
    return named


def _rebuilt(cls: type, english: str, state: Any) -> FormulaError:
    error: FormulaError = cls(english)
    error.__dict__.update(state)
    return error


class Warning(NamedTuple):
    """What the language accepts and a person rarely means."""

    reason: int
    message: str
    """In Chinese."""
    english: str
    position: Optional[Position]


class FormulaWarning(UserWarning):
    """Told by :mod:`warnings` where a formula is made that has :attr:`Formula.warnings`."""


class Fault(NamedTuple):
    """What the checker finds, or a warning that is none of its faults."""

    kind: int
    """0 no number before "!", 1 no number, 2 no text, 3 too few arguments, 4 too many; -1 for a
    warning."""
    operand: int
    """Operand or argument, from 1; 0 for too many arguments."""
    wants: Optional[str]
    """"number" or "text"; None where that is not checked."""
    name: str
    """Of the operator or function; empty for a warning."""
    position: Position
    english: str = ""
    """Of a warning."""
    message: str = ""
    """Of a warning, in Chinese."""
    reason: int = 0
    """Of a warning, MORANDEL_REASON_... of morandel/c.h."""
