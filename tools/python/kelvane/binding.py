# SPDX-License-Identifier: MIT
"""What the declarations mean: how texts, records and functions cross between Python and C."""

import operator
import sys
import traceback
from ctypes import *  # noqa: the declarations use its names
from ctypes import CDLL, CFUNCTYPE, Structure, c_char_p, c_double, c_long

from .place import LIBRARY

_library = CDLL(LIBRARY)
_texts = {}  # of the fields of records, by their places
failure = None  # the exception of a handler, which ended the application


class Text(c_char_p):
    """A text: given as str or bytes, returned as str."""

    @classmethod
    def from_param(cls, value):
        return super().from_param(value.encode() if isinstance(value, str) else value)


def _text(result, *_):
    return None if result is None else result.decode(errors="replace")


class Opaque(Structure):
    """What only the library looks into."""


class Record(Structure):
    """A record. Fields take str for texts and functions for callbacks; texts are read as bytes.

    A text lasts until the field gets another one, even when the object goes that it was set by: what
    a callback is handed are objects of that call alone, made for a record of the library's.
    """

    def __setattr__(self, name, value):
        kind = dict(self._fields_).get(name)
        if isinstance(value, str):
            value = value.encode()
        elif isinstance(kind, type) and issubclass(kind, Callback):
            value = kind.from_param(value)
        super().__setattr__(name, value)
        if kind is c_char_p:
            _texts[addressof(self), name] = value


class timeval(Record):
    _fields_ = [("tv_sec", c_long), ("tv_usec", c_long)]


def _fail(error):
    global failure
    failure = failure or error
    if not isinstance(error, SystemExit):
        traceback.print_exc()
    _library.CloseApp()


class Callback:
    """A function that the library calls. It lives as long as the program, since the library may keep it.

    An exception cannot pass through the library: it is printed and ends the application, and then
    KelvaneMain() raises SystemExit.
    """

    @classmethod
    def from_param(cls, function):
        if function is None or isinstance(function, cls):
            return function or cls()
        if function not in cls.kept:
            own = cls(cls.guarded(function))
            cls.kept[function] = own
            cls.functions[cast(own, c_void_p).value] = function
        return cls.kept[function]

    @classmethod
    def guarded(cls, function):
        def call(*arguments):
            try:
                answer = function(*(_text(one) if isinstance(one, bytes) else one for one in arguments))
                sys.stdout.flush()  # the library may end the process behind any call
                return cls.plain if answer is None or cls.plain is None else operator.index(answer)
            except BaseException as error:
                _fail(error)
                return cls.plain

        return call

    @classmethod
    def back(cls, result, *_):
        """The function of Python that was given to the library."""
        return cls.functions.get(cast(result, c_void_p).value, result or None)


_callbacks = {}


def callback(result, *arguments):
    """The type of a function pointer; the same for the same types."""
    key = (result, *arguments)
    if key not in _callbacks:
        plain = [c_char_p if one is Text or one == POINTER(c_char) else one for one in arguments]
        base = CFUNCTYPE(result, *plain)
        _callbacks[key] = type("callback", (Callback, base), {
            "_flags_": base._flags_, "_restype_": result, "_argtypes_": tuple(plain),
            "plain": None if result is None else 0, "kept": {}, "functions": {}})
    return _callbacks[key]


def _variable(value):
    """An argument behind those that are declared."""
    if isinstance(value, str):
        return c_char_p(value.encode())
    return {bytes: c_char_p, float: c_double, int: c_long}.get(type(value), lambda same: same)(value)


def function(name, result, arguments, is_variadic, about):
    own = getattr(_library, name)
    own.argtypes = arguments
    own.restype = c_char_p if result is Text else result
    if result is Text:
        own.errcheck = _text
    elif isinstance(result, type) and issubclass(result, Callback):
        own.errcheck = result.back
    own.__doc__ = about
    if not is_variadic:
        return own
    count = len(arguments)

    def call(*given):
        return own(*given[:count], *map(_variable, given[count:]))

    call.__name__, call.__doc__, call.argtypes, call.restype = name, about, arguments, own.restype
    return call


class Memory(c_void_p):
    """What free() takes. A text is no such thing, but a copy of Python's."""

    @classmethod
    def from_param(cls, value):
        if isinstance(value, (str, bytes)):
            raise TypeError("a text is a copy, which is not freed")
        return super().from_param(value)


free = function("free", None, [Memory], False,
                "void free(void *memory);\n\nFrees what is the caller's to free, such as a bitmap of LoadPicture().")
