"""What the tests share."""

import pandas
import pytest


@pytest.fixture
def frame():
    return pandas.DataFrame(
        {"name": ["苹果", "梨", None], "price": [12.5, 2.0, 1.0], "qty": [3, 10, 4]}
    )
