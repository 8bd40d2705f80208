"""Prints what callers of the Python package hold on to: each public name, what it takes, and its types."""

import inspect

import morandel


def told(name, thing):
    if isinstance(thing, property):
        return f"{name}: {inspect.signature(thing.fget).return_annotation}"
    if isinstance(thing, classmethod | staticmethod):
        thing = thing.__func__
    return f"{name}{inspect.signature(thing)}"


def members(owner):
    """Of a class, whether the package or what makes data classes wrote them."""
    for name, thing in sorted(vars(owner).items()):
        if name in ("__init__", "__call__") or not name.startswith("_"):
            if callable(thing) or isinstance(thing, property | classmethod | staticmethod):
                yield told(name, thing)
    for name, kind in vars(owner).get("__annotations__", {}).items():  # in the order of a tuple's fields
        if not name.startswith("_"):
            yield f"{name}: {getattr(kind, '__forward_arg__', kind)}"


for name in sorted(morandel.__all__):
    thing = getattr(morandel, name)
    if not inspect.isclass(thing):
        print(told(name, thing))
        continue
    print(f"class {name}({', '.join(base.__name__ for base in thing.__bases__)})")
    for line in members(thing):
        print(f"    {line}")
