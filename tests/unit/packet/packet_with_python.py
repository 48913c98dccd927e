# SPDX-License-Identifier: MIT
"""Reads and writes packet files with nothing but a CBOR and a zstd library, as docs/packet.cddl describes them.

decode FILE: prints the columns as JSON.  encode FILE: writes a sample of its own.
"""
import json
import struct
import sys

import cbor2
import zstandard

LETTERS = {72: "b", 77: "h", 78: "i", 79: "q", 86: "d"}


def values_of(column):
    values = column["values"]
    if isinstance(values, cbor2.CBORTag):
        letter = LETTERS[values.tag]
        count = len(values.value) // struct.calcsize("<" + letter)
        values = struct.unpack("<%d%s" % (count, letter), values.value)
    nulls = column.get("nulls")
    return [None if nulls and nulls[i // 8] >> i % 8 & 1 else value for i, value in enumerate(values)]


def decode(path):
    with open(path, "rb") as file:
        packet = cbor2.loads(zstandard.ZstdDecompressor().decompress(file.read()))
    assert packet["format"] == "holdwise.packet" and packet["version"] == 1
    columns = [{"name": c["name"], "type": c["type"], "values": [
        str(v) if isinstance(v, int) else v for v in values_of(c)]} for c in packet["columns"]]
    assert all(len(c["values"]) == packet["rows"] for c in columns)
    print(json.dumps(columns))


def encode(path):
    def typed(tag, values):
        return cbor2.CBORTag(tag, struct.pack("<%d%s" % (len(values), LETTERS[tag]), *values))

    packet = {"format": "holdwise.packet", "version": 1, "rows": 3, "columns": [
        {"name": "code", "type": "integer", "values": typed(78, [600000, 0, -1]), "nulls": b"\x02"},
        {"name": "price", "type": "real", "values": typed(86, [10.25, -0.5, 1e-300])},
        {"name": "name", "type": "text", "values": ["浦发银行", "", "b"], "nulls": b"\x02"},
        {"name": "at", "type": "datetime", "values": typed(79, [1704153600000, 0, -1])},
    ]}
    with open(path, "wb") as file:
        file.write(zstandard.ZstdCompressor(write_checksum=True, write_content_size=True).compress(cbor2.dumps(packet)))


{"decode": decode, "encode": encode}[sys.argv[1]](sys.argv[2])
