"""Checks a text of Python's, through the C interface. CODE_ANALYZER_LIBRARY may name the library."""

import ctypes
import os
import sys

library = ctypes.CDLL(os.environ.get("CODE_ANALYZER_LIBRARY", "libCodeAnalyzerCheck.so.1"))


class Position(ctypes.Structure):
    _fields_ = [("line", ctypes.c_uint64), ("column", ctypes.c_uint64), ("offset", ctypes.c_size_t)]


class Span(ctypes.Structure):
    _fields_ = [("start", Position), ("end", Position)]


class Finding(ctypes.Structure):  # as far as it is needed here
    _fields_ = [
        ("size", ctypes.c_size_t),
        ("span", Span),
        ("code", ctypes.c_int32),
        ("severity", ctypes.c_int32),
        ("identifier", ctypes.c_char_p),
        ("title", ctypes.c_char_p),
        ("message", ctypes.c_char_p),
    ]


Callback = ctypes.CFUNCTYPE(ctypes.c_int, ctypes.POINTER(Finding), ctypes.c_void_p)
library.code_analyzer_open.argtypes = [ctypes.c_void_p, ctypes.POINTER(ctypes.c_void_p)]
library.code_analyzer_check_text.argtypes = [
    ctypes.c_void_p,
    ctypes.c_char_p,
    ctypes.c_char_p,
    ctypes.c_size_t,
    Callback,
    ctypes.c_void_p,
]
library.code_analyzer_error.argtypes = [ctypes.c_void_p]
library.code_analyzer_error.restype = ctypes.c_char_p
library.code_analyzer_close.argtypes = [ctypes.c_void_p]


class Checker:
    """One session: for one thread at a time."""

    def __init__(self):
        self.session = ctypes.c_void_p()
        if library.code_analyzer_open(None, ctypes.byref(self.session)) != 0:
            raise RuntimeError(library.code_analyzer_error(None).decode())

    def check(self, path, text):
        """The findings of a text, as dictionaries. What the library hands over is copied: it is gone afterwards."""
        found = []

        def take(finding, _):
            record = finding.contents
            found.append(
                {
                    "line": record.span.start.line + 1,
                    "column": record.span.start.column + 1,
                    "code": record.code,
                    "severity": "error" if record.severity == 2 else "warning",
                    "identifier": record.identifier.decode(),
                    "message": record.message.decode(),
                }
            )
            return 0

        data = text.encode()
        status = library.code_analyzer_check_text(
            self.session, os.fsencode(path), data, len(data), Callback(take), None
        )
        if status >= 4:
            raise RuntimeError(library.code_analyzer_error(self.session).decode())
        return found

    def close(self):
        library.code_analyzer_close(self.session)
        self.session = None


if __name__ == "__main__":
    checker = Checker()
    findings = checker.check("example.php", sys.stdin.read())
    for found in findings:
        print("{line}:{column}: {severity}: {message} [{code}]".format(**found))
    checker.close()
    sys.exit(1 if findings else 0)
