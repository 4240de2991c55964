"""Records of the ehal library, read from and written into archive bytes."""

from typing import Any, Dict, List, Literal, Optional, Tuple, TypedDict, Union, overload

# A record: its fields by name, in archive order; values are int, str, bytes, nested records
# (dicts) and lists.
Record = Dict[str, Any]
BytesLike = Union[bytes, bytearray, memoryview]

# @RECORD_TYPES@

class NamedValue(int):
    """A number whose value the record names: an int, with the name its text form prints."""
    name: str
    def __new__(cls, value: int, name: str) -> NamedValue: ...

class SerializeError(RuntimeError):
    """A record refused its bytes; str() is the library's report text."""

def classes() -> Dict[str, List[int]]:
    """Every registered record class with its accepted signatures, newest first."""

# @DECODE_OVERLOADS@
@overload
def decode(class_name: str, data: BytesLike, *, with_rest: Literal[False] = ...) -> Record: ...
@overload
def decode(class_name: str, data: BytesLike, *, with_rest: Literal[True]) -> Tuple[Record, int]: ...
# @ENCODE_OVERLOADS@
@overload
def encode(class_name: str, fields: Record) -> bytes:
    """The bytes of a record of the class built from `fields`, in its current layout."""

def guess(data: BytesLike) -> List[Dict[str, Any]]:
    """The classes that accept the first number of `data` as a signature."""

def envelope(
    payload: BytesLike, message_type: int, client: Tuple[str, int] = ..., port: int = ...
) -> bytes:
    """The bytes of an eHal::EMessage carrying `payload`."""

def unwrap(data: BytesLike, payload_class: Optional[str] = ...) -> Dict[str, Any]:
    """The eHal::EMessage read from `data`: type, client, port and payload."""
