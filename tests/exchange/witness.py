#!/usr/bin/python3
"""What other programs read and write, for tst_ExchangeWitness.

witness.py read PROGRAM FILE    prints the frames that PROGRAM finds in FILE
witness.py write PROGRAM FILE   has PROGRAM write the frames of standard input to FILE

PROGRAM is python-can, tshark (reading only), asc2log (reading only) or log2asc (writing only). A frame is a line:
nanoseconds, channel, rx or tx, identifier (hexadecimal), flags (hexadecimal, those of BusFrame), length, data (hexadecimal
or -).
"""
import json
import re
import struct
import subprocess
import sys
import tempfile

EXTENDED, REMOTE, ERROR, FD, SWITCH, PASSIVE, LIN = (1 << bit for bit in range(7))


def put(time, channel, is_sent, identifier, flags, length, data):
    print(time, channel, "tx" if is_sent else "rx", f"{identifier:X}", f"{flags:x}", length, bytes(data).hex() or "-")


def frames_of_input():
    for line in sys.stdin:
        time, channel, direction, identifier, flags, length, data = line.split()
        yield (int(time), int(channel), direction == "tx", int(identifier, 16), int(flags, 16), int(length),
               b"" if data == "-" else bytes.fromhex(data))


def read_python_can(path):
    import can

    if path.endswith(".asc"):
        reader = can.ASCReader(path, relative_timestamp=False)
    else:
        reader = {"blf": can.BLFReader, "trc": can.TRCReader}[path[-3:]](path)
    for message in reader:
        flags = (EXTENDED * message.is_extended_id | REMOTE * message.is_remote_frame | ERROR * message.is_error_frame
                 | FD * message.is_fd | SWITCH * message.bitrate_switch | PASSIVE * message.error_state_indicator)
        if message.is_error_frame:
            flags &= ~EXTENDED
        put(round(message.timestamp * 1e9), message.channel, not message.is_rx, message.arbitration_id, flags,
            message.dlc, message.data)


def write_python_can(path):
    import can

    writer = {"asc": can.ASCWriter, "blf": can.BLFWriter, "trc": can.TRCWriter}[path[-3:]](path)
    for time, channel, is_sent, identifier, flags, length, data in frames_of_input():
        writer(can.Message(timestamp=time / 1e9, channel=channel, is_rx=not is_sent, arbitration_id=identifier,
                           is_extended_id=bool(flags & EXTENDED), is_remote_frame=bool(flags & REMOTE),
                           is_error_frame=bool(flags & ERROR), is_fd=bool(flags & FD),
                           bitrate_switch=bool(flags & SWITCH), error_state_indicator=bool(flags & PASSIVE), dlc=length,
                           data=None if flags & REMOTE else data))
    writer.stop()


def socketcan(raw, flags):
    word, length, fd_flags = struct.unpack_from(">LBB", raw)
    is_fd = bool(fd_flags & 4)
    flags = (EXTENDED * bool(word & 1 << 31) | REMOTE * bool(word & 1 << 30) | ERROR * bool(word & 1 << 29)
             | FD * is_fd | SWITCH * (is_fd and fd_flags & 1) | PASSIVE * bool(is_fd and fd_flags & 2))
    data = b"" if flags & REMOTE else raw[8:8 + length]
    return word & 0x1FFFFFFF, flags, length, data


def read_tshark(path):
    command = ["tshark", "-r", path, "-T", "json", "-x", "-J", "frame can canfd lin"]
    packets = subprocess.run(command, check=True, stdout=subprocess.PIPE, stderr=subprocess.PIPE).stdout
    for packet in json.loads(packets):
        layers = packet["_source"]["layers"]
        frame = layers["frame"]
        seconds, fraction = frame["frame.time_epoch"].split(".")
        name = frame.get("frame.interface_id_tree", {}).get("frame.interface_name", "0")
        channel = int(re.search(r"\d*$", name).group() or 0)
        direction = int(frame.get("frame.packet_flags_tree", {}).get("frame.packet_flags_direction", "0"), 0)
        time = int(seconds) * 10**9 + int(fraction.ljust(9, "0"))
        raw = bytes.fromhex(layers["frame_raw"][0])
        if "lin" in layers:  # version, 3 bytes, length and kinds, protected identifier, checksum, errors, data
            length, identifier = raw[4] >> 4, raw[5] & 0x3F
            put(time, channel, direction == 2, identifier, LIN, length, raw[8:8 + length])
            continue
        identifier, flags, length, data = socketcan(raw, 0)
        dissected = next(layers[layer] for layer in ("can", "canfd") if layer in layers)
        if not flags & ERROR and int(dissected["can.id"], 0) != identifier:
            sys.exit(f"tshark says {dissected['can.id']}, not {identifier}")
        put(time, channel, direction == 2, identifier, flags, length, data)


def read_asc2log(path):
    lines = subprocess.run(["asc2log", "-I", path], check=True, stdout=subprocess.PIPE, text=True).stdout
    for line in lines.splitlines():
        time, channel, identifier, fd, flags, data, direction = re.fullmatch(
            r"\((\d+\.\d+)\) can(\d+) ([0-9A-F]+)#(?:(#)([0-9A-F]))?(R?\d?|[0-9A-F.]*)(?: ([RT]))?", line.strip()).groups()
        seconds, fraction = time.split(".")
        nanoseconds = int(seconds) * 10**9 + int(fraction.ljust(9, "0"))
        is_extended = len(identifier) == 8
        word = int(identifier, 16)
        if is_extended and word & 1 << 29:
            put(nanoseconds, channel, direction == "T", 0, ERROR, 0, b"")
            continue
        bits = (EXTENDED * is_extended | FD * bool(fd) | SWITCH * bool(fd and int(flags, 16) & 1)
                | PASSIVE * bool(fd and int(flags, 16) & 2))
        if data.startswith("R"):
            put(nanoseconds, channel, direction == "T", word, bits | REMOTE, int(data[1:] or 0), b"")
        else:
            content = bytes.fromhex(data.replace(".", ""))
            put(nanoseconds, channel, direction == "T", word, bits, len(content), content)


def write_log2asc(path):
    with tempfile.NamedTemporaryFile("w", suffix=".log") as log:
        for time, channel, _, identifier, flags, length, data in frames_of_input():
            name = f"{identifier:08X}" if flags & EXTENDED else f"{identifier:03X}"
            if flags & FD:
                content = f"##{bool(flags & SWITCH) + 2 * bool(flags & PASSIVE):X}{data.hex().upper()}"
            else:
                content = "#R" + (str(length) if length else "") if flags & REMOTE else "#" + data.hex().upper()
            log.write(f"({time // 10**9}.{time % 10**9 // 1000:06d}) can{channel} {name}{content}\n")
        log.flush()
        subprocess.run(["log2asc", "-I", log.name, "-O", path, "can0", "can1", "can2", "can3"], check=True)


if __name__ == "__main__":
    _, action, program, file = sys.argv
    globals()[f"{action}_{program.replace('-', '_')}"](file)
