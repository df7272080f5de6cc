#!/usr/bin/python3
"""decode_witness.py PROGRAM [FRAMES [SEED]]

Makes databases at random, and random frames for their messages, 10,000 by default. Has PROGRAM (decode_frames) and canmatrix
decode them and compares every raw value, physical value and text. Ends with 77 where canmatrix is not installed.
"""

import csv
import io
import math
import random
import struct
import subprocess
import sys
import tempfile

try:
    import canmatrix.formats
except ImportError:
    print("decode_witness: canmatrix is not installed; decoding was not compared with another program's.")
    print("On Debian: apt-get install python3-canmatrix")
    sys.exit(77)

MESSAGES = 20  # in each database
FRAMES = 50  # of each message
LENGTHS = [1, 2, 3, 4, 5, 6, 7, 8, 8, 8, 8, 12, 16, 20, 24, 32, 48, 64]
FACTORS = ["1", "0.1", "0.5", "0.001", "2", "-0.25", "100", "0.0009765625", "1E-005", "3", "1.5e+2", "0.333"]
OFFSETS = ["0", "0", "-40", "0.5", "1000", "-273.15", "1e-3"]


def start_bit(first, length, big):
    """first: place of the lowest bit in Intel order, or of the highest one counted from the first byte's top."""
    return first if not big else first // 8 * 8 + 7 - first % 8


class Message:
    """A message with random signals, as lines of a DBC file."""

    def __init__(self, rng, number):
        self.extended = rng.random() < 0.3
        base = rng.getrandbits(18) if self.extended else 0
        self.id = base << 11 | number
        self.length = rng.choice(LENGTHS)
        self.lines, self.tables, self.types, self.ranges = [], [], [], []
        dbc_id = self.id | (1 << 31 if self.extended else 0)
        self.head = f"BO_ {dbc_id} Message{number}: {self.length} Sender"
        kind = rng.choice(["plain", "plain", "simple", "nested"])
        bits = self.length * 8
        if kind != "plain" and bits >= 24:
            self.add(rng, dbc_id, "Mux", "M", 0, rng.randint(1, 6), False, plain=True)
            if kind == "nested":
                self.add(rng, dbc_id, "SubMux", "m1M", 8, rng.randint(1, 5), False, plain=True)
                self.ranges.append(f"SG_MUL_VAL_ {dbc_id} SubMux Mux 1-1, 4-6;")
        else:
            kind = "plain"
        for i in range(rng.randint(1, 12)):
            self.add_random(rng, dbc_id, f"Signal{i}", kind)

    def add_random(self, rng, dbc_id, name, kind):
        bits = self.length * 8
        floats = [size for size in (32, 64) if size <= bits]
        is_float = bool(floats) and rng.random() < 0.15
        length = rng.choice(floats) if is_float else rng.randint(1, min(64, bits))
        big = rng.random() < 0.5
        first = rng.randint(0, bits - length)
        mode = ""
        if kind == "simple" and rng.random() < 0.8:
            mode = f"m{rng.randint(0, 7)}"
        if kind == "nested" and rng.random() < 0.8:
            low = rng.randint(0, 7)
            mode = f"m{low}"
            parent = rng.choice(["Mux", "SubMux"])
            further = f", {low + 3}-{low + 9}" if rng.random() < 0.5 else ""
            self.ranges.append(f"SG_MUL_VAL_ {dbc_id} {name} {parent} {low}-{low + 1}{further};")
        self.add(rng, dbc_id, name, mode, first, length, big, is_float=is_float)

    def add(self, rng, dbc_id, name, mode, first, length, big, is_float=False, plain=False):
        sign = "+" if plain or rng.random() < 0.5 else "-"
        factor, offset = ("1", "0") if plain or rng.random() < 0.4 else (rng.choice(FACTORS), rng.choice(OFFSETS))
        order = "0" if big else "1"
        start = start_bit(first, length, big)
        unit = rng.choice(["", "km/h", "°C", "%", "a,b"])
        self.lines.append(f' SG_ {name} {mode} : {start}|{length}@{order}{sign} ({factor},{offset}) [0|0] "{unit}" Node')
        if is_float:
            self.types.append(f"SIG_VALTYPE_ {dbc_id} {name} : {1 if length == 32 else 2};")
        elif rng.random() < 0.3:
            low, high = (0, 2**length) if sign == "+" else (-(2 ** (length - 1)), 2 ** (length - 1))
            values = {rng.randint(max(low, -64), min(high, 64) - 1) for _ in range(8)}
            texts = " ".join(f'{value} "Text {value}"' for value in sorted(values))
            self.tables.append(f"VAL_ {dbc_id} {name} {texts} ;")


def database(rng):
    messages = [Message(rng, number) for number in range(1, MESSAGES + 1)]
    lines = ['VERSION ""', "", "NS_ :", "\tCM_", "\tBA_", "", "BS_:", "", "BU_: Sender Node", ""]
    for message in messages:
        lines += [message.head, *message.lines, ""]
    for part in ("tables", "types", "ranges"):
        for message in messages:
            lines += getattr(message, part)
    return messages, "\n".join(lines) + "\n"


def payload(rng, length):
    kind = rng.random()
    if kind < 0.1:
        return bytes([0xFF] * length)
    if kind < 0.2:
        return bytes([rng.randint(0, 7) for _ in range(length)])
    return rng.randbytes(length)


def same_number(text, expected, is_single, size=0):
    """Raw values as they are; physical ones, which are computed in other ways, to 15 digits of what they are the sum of."""
    found = float(text)
    expected = float(expected)
    if is_single and not math.isnan(expected):
        found = struct.unpack("f", struct.pack("f", found))[0] if abs(found) < 3.4e38 else found
    if math.isnan(expected) or math.isnan(found):
        return math.isnan(expected) and math.isnan(found)
    return found == expected or abs(found - expected) <= 1e-14 * size


def differences(rows, matrix, frames):
    """Texts about what is different, and how many values were compared."""
    compared, found = 0, []
    by_frame = {}
    for row in rows:
        by_frame.setdefault(int(row["time"]), {})[row["signal"]] = row
    for number, (message, data) in enumerate(frames, 1):
        frame = matrix.frame_by_id(canmatrix.ArbitrationId(message.id, message.extended))
        expected = frame.decode(data)
        decoded = by_frame.get(number, {})
        if set(expected) != set(decoded):
            found.append(f"{number}: signals {sorted(decoded)}, expected {sorted(expected)}")
            continue
        for name, value in expected.items():
            row, signal = decoded[name], value.signal
            raw_is_same = (
                same_number(row["raw"], value.raw_value, signal.size == 32)
                if signal.is_float
                else int(row["raw"]) == value.raw_value
            )
            finite = not signal.is_float or math.isfinite(value.raw_value)
            physical = float(value.phys_value) if finite else value.raw_value * float(signal.factor) + float(signal.offset)
            text = "" if signal.is_float else signal.values.get(value.raw_value, "")
            size = abs(physical - float(signal.offset)) + abs(float(signal.offset))
            single = signal.is_float and signal.size == 32 and signal.factor == 1 and signal.offset == 0
            if (
                not raw_is_same
                or not same_number(row["physical"], physical, single, size)
                or row["text"] != text
                or row["unit"] != (signal.unit or "")
            ):
                found.append(f"{number}: {frame.name}.{name} is {row}, expected {value.raw_value}, {physical}, {text!r}")
            compared += 1
    return found, compared


def main():
    program = sys.argv[1]
    wanted = int(sys.argv[2]) if len(sys.argv) > 2 else 10000
    rng = random.Random(int(sys.argv[3]) if len(sys.argv) > 3 else 20)
    done, compared = 0, 0
    while done < wanted:
        messages, text = database(rng)
        frames = [(message, payload(rng, message.length)) for message in messages for _ in range(FRAMES)]
        rng.shuffle(frames)
        with tempfile.TemporaryDirectory() as folder:
            path = folder + "/random.dbc"
            with open(path, "w", encoding="utf-8") as file:
                file.write(text)
            lines = "".join(f"{m.id:0{8 if m.extended else 3}x}#{data.hex()}\n" for m, data in frames)
            run = subprocess.run([program, path], input=lines.encode(), capture_output=True, check=True)
            matrix = canmatrix.formats.loadp_flat(path, dbcImportEncoding="utf-8")
        if run.stderr:
            sys.exit(f"decode_witness: {run.stderr.decode()}\n{text}")
        found, count = differences(csv.DictReader(io.StringIO(run.stdout.decode())), matrix, frames)
        if found:
            print(text)
            print("\n".join(found[:20]))
            sys.exit(f"decode_witness: {len(found)} differences after {done} frames")
        done += len(frames)
        compared += count
    print(f"decode_witness: {compared} signals of {done} frames are the same")


if __name__ == "__main__":
    main()
