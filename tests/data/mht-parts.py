#!/usr/bin/env python3
"""Reads an MHT file with Python's own MIME reader and prints what it finds as JSON.

    mht-parts.py FILE

"longest" is the longest line without its CRLF, "bare" the count of CR and LF that are no CRLF, "defects" what the
reader complains about anywhere, "parts" the parts behind the multipart in order, bodies decoded and then in Base64.
"""

import base64
import email
import email.policy
import json
import sys


def headers_of(part):
    return {name.lower(): str(value) for name, value in part.items()}


def defects_of(message):
    for part in message.walk():
        yield from part.defects
        for value in part.values():
            yield from getattr(value, "defects", ())


data = open(sys.argv[1], "rb").read()
message = email.message_from_bytes(data, policy=email.policy.default)
parts = list(message.iter_parts())
json.dump(
    {
        "headers": headers_of(message),
        "type": message.get_content_type(),
        "rootType": message.get_param("type"),
        "preamble": (message.preamble or "") + (message.epilogue or ""),
        "defects": [repr(defect) for defect in defects_of(message)],
        "longest": max(len(line) for line in data.split(b"\r\n")),
        "bare": len(data.replace(b"\r\n", b"").translate(None, bytes(set(range(256)) - {10, 13}))),
        "beyondAscii": len(data.translate(None, bytes(range(128)))),
        "parts": [
            {
                "type": part.get_content_type(),
                "charset": part.get_content_charset(),
                "headers": headers_of(part),
                "body": base64.b64encode(part.get_payload(decode=True)).decode(),
            }
            for part in parts
        ],
    },
    sys.stdout,
)
