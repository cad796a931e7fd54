#!/usr/bin/python3
"""A recorder for the real-time driver's tests, of the 30-channel ("KTX") or the
72-channel ("ZNQ") family, over Modbus TCP (--tcp: a socket of its own on a free
port, written to --port-file) or Modbus RTU (--device: one end of a socat
pseudo-terminal pair). It serves the fixed blocks the real-time driver reads.

Registers (a text puts its first character in the low byte of a register):
  header, 30 words at 44001 (KTX) or 47901 (ZNQ); the other header is zeros
  (--family none: a 72-channel layout whose model is "ABC-12 OTHER"):
    model "KTX-30 TEST" / "ZNQ-72 TEST", serial "SN001234" at word 16,
    version "V%02d.00" % --version at word 24
  channels, 64 words each from 40001, channel c from 1:
    tag 1 "TAG%02d" % c at 0, tag 2 "T2_%02d" % c at 4, ColorNo c % 15 at 8,
    InputType 1 (0 for the last channel) at 9, unit code at 11 (156 for
    channel 1, else c), Decimals 1 at 17, word 25 = 7, ScaleLow 0 at 27,
    ScaleHigh 1000 at 28, common-point flag 1 at 35 for channel 3,
    ScaleKind at 19: 1 for channels 1 and 2, else 0; range words 13 to 16:
    -100, 200, -3, 5.
    Channel 1 has ScaleLow = ScaleHigh = 0, channel 2 both -9.
  groups, 18 words each at 42425 / 45825: "GROUP%d" % g, channels
    10 * (g - 1) + 1 .. + 10 for g <= 3, the fourth group and beyond empty
    except the ZNQ groups 4 to 7 (channels 31 .. 70) ; ZNQ group 8 empty.
  common, 33 words at 43032 / 47482: the common decimal point 2 at word 16
  user units, 12 × 7 words at 43301 / 47751: "UU%02d" % k
  current values at 30087 (44 words) / 30077 (96 words): alarm words from
    word 6 all 0xFFFF; process values from word 14 / 24: 10 * c + the number
    of current value reads before this one.

Faults come from --control: each line "KIND COUNT" applies KIND to the next
COUNT requests: none, noreply, badcrc (RTU, both CRC bytes wrong), badcrclow
(RTU, the low byte wrong), exception (function + 128, code 2). Every request
is logged to --log as "FUNCTION ADDRESS COUNT" (and on TCP "tid N" before it).
The process ends by itself after --seconds.
"""
import argparse
import os
import select
import socket
import struct
import sys
import time


def crc16(data):
    crc = 0xFFFF
    for b in data:
        crc ^= b
        for _ in range(8):
            crc = (crc >> 1) ^ 0xA001 if crc & 1 else crc >> 1
    return crc


def text_words(text, words):
    data = text.encode("cp932")[: 2 * words].ljust(2 * words, b"\0")
    return [data[i] | (data[i + 1] << 8) for i in range(0, 2 * words, 2)]


class Registers:
    def __init__(self, family, version):
        self.ktx = family == "ktx"
        self.family = family
        self.holding = {}
        self.inputs = {}
        self.reads = 0
        self.channels = 30 if self.ktx else 72
        self.fill(version)

    def put(self, register, values):
        table, base = (self.inputs, 30001) if register < 40001 else (self.holding, 40001)
        for i, v in enumerate(values):
            table[register - base + i] = v & 0xFFFF

    def fill(self, version):
        header = 44001 if self.ktx else 47901
        model = "KTX-30 TEST" if self.ktx else "ZNQ-72 TEST"
        if self.family == "none":
            model = "ABC-12 OTHER"
        self.put(header, text_words(model, 8))
        self.put(header + 16, text_words("SN001234", 4))
        self.put(header + 24, text_words("V%02d.00" % version, 4))
        for c in range(1, self.channels + 1):
            at = 40001 + 64 * (c - 1)
            self.put(at, text_words("TAG%02d" % c, 4))
            self.put(at + 4, text_words("T2_%02d" % c, 4))
            self.put(at + 8, [c % 15])
            self.put(at + 9, [0 if c == self.channels else 1])
            self.put(at + 11, [156 if c == 1 else c])
            self.put(at + 13, [-100, 200, -3, 5])
            self.put(at + 17, [1])
            self.put(at + 19, [1 if c <= 2 else 0])
            self.put(at + 25, [7])
            low_high = {1: (0, 0), 2: (-9, -9)}.get(c, (0, 1000))
            self.put(at + 27, list(low_high))
            self.put(at + 35, [1 if c == 3 else 0])
        groups, start = (4, 42425) if self.ktx else (8, 45825)
        for g in range(1, groups + 1):
            at = start + 18 * (g - 1)
            self.put(at, text_words("GROUP%d" % g, 8))
            full = g <= 3 or (not self.ktx and g <= 7)
            self.put(at + 8, [10 * (g - 1) + m if full else 0 for m in range(1, 11)])
        self.put(43032 if self.ktx else 47482, [0] * 16 + [2])
        units = 43301 if self.ktx else 47751
        for k in range(1, 13):
            self.put(units + 7 * (k - 1), text_words("UU%02d" % k, 7))
        self.current()

    def current(self):
        at = 30087 if self.ktx else 30077
        value_word = 14 if self.ktx else 24
        alarm_words = 8 if self.ktx else 18
        self.put(at + 6, [0xFFFF] * alarm_words)
        self.put(at + value_word, [10 * c + self.reads for c in range(1, self.channels + 1)])

    def read(self, function, address, count):
        if function == 4 and address == (86 if self.ktx else 76):
            self.current()
            self.reads += 1
        table = self.inputs if function == 4 else self.holding
        return [table.get(address + i, 0) for i in range(count)]


class Faults:
    def __init__(self, path):
        self.path = path
        self.seen = 0
        self.queue = []

    def next(self):
        if self.path and os.path.exists(self.path):
            with open(self.path) as f:
                lines = [x.split() for x in f.read().splitlines() if x.strip()]
            for fields in lines[self.seen:]:
                self.queue.append([fields[0], int(fields[1])])
            self.seen = len(lines)
        if not self.queue:
            return None
        kind = self.queue[0][0]
        self.queue[0][1] -= 1
        if self.queue[0][1] <= 0:
            self.queue.pop(0)
        return kind


def pdu_reply(registers, function, address, count):
    words = registers.read(function, address, count)
    return bytes([function, 2 * count]) + b"".join(struct.pack(">H", w) for w in words)


def serve_tcp(args, registers, faults, log, deadline):
    server = socket.socket(socket.AF_INET, socket.SOCK_STREAM)
    server.setsockopt(socket.SOL_SOCKET, socket.SO_REUSEADDR, 1)
    server.bind(("127.0.0.1", 0))
    server.listen(4)
    with open(args.port_file + ".tmp", "w") as f:
        f.write("%d\n" % server.getsockname()[1])
    os.rename(args.port_file + ".tmp", args.port_file)
    clients = []
    while time.time() < deadline:
        ready, _, _ = select.select([server] + clients, [], [], 0.2)
        for s in ready:
            if s is server:
                conn, _ = server.accept()
                clients.append(conn)
                continue
            try:
                frame = s.recv(12)
            except OSError:
                frame = b""
            if len(frame) < 12:
                clients.remove(s)
                s.close()
                continue
            tid, _, _, station, function, address, count = struct.unpack(">HHHBBHH", frame)
            log.write("tid %d\n%d %d %d\n" % (tid, function, address, count))
            log.flush()
            kind = faults.next()
            if kind == "noreply":
                continue
            if kind == "exception":
                pdu = bytes([function | 0x80, 2])
            else:
                pdu = pdu_reply(registers, function, address, count)
            head = struct.pack(">HHHB", tid, 0, len(pdu) + 1, station)
            try:
                s.sendall(head + pdu)
            except OSError:
                pass


def serve_rtu(args, registers, faults, log, deadline):
    import serial
    port = serial.Serial(args.device, 9600, timeout=0.2)
    with open(args.port_file, "w") as f:
        f.write("ready\n")
    while time.time() < deadline:
        frame = port.read(8)
        if len(frame) < 8:
            port.reset_input_buffer()
            continue
        if struct.pack("<H", crc16(frame[:6])) != frame[6:]:
            log.write("crc %s\n" % frame.hex())
            log.flush()
            port.reset_input_buffer()
            continue
        station, function, address, count = struct.unpack(">BBHH", frame[:6])
        log.write("%d %d %d\n" % (function, address, count))
        log.flush()
        kind = faults.next()
        if kind == "noreply":
            continue
        if kind == "exception":
            body = bytes([station, function | 0x80, 2])
        else:
            body = bytes([station]) + pdu_reply(registers, function, address, count)
        crc = crc16(body)
        low, high = crc & 0xFF, crc >> 8
        if kind == "badcrc":
            low, high = low ^ 0x5A, high ^ 0xA5
        elif kind == "badcrclow":
            low ^= 0x5A
        port.write(body + bytes([low, high]))
        port.flush()


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--family", choices=["ktx", "znq", "none"], default="ktx")
    parser.add_argument("--version", type=int, default=14)
    parser.add_argument("--tcp", action="store_true")
    parser.add_argument("--device")
    parser.add_argument("--port-file", required=True)
    parser.add_argument("--control")
    parser.add_argument("--log", required=True)
    parser.add_argument("--seconds", type=float, default=120)
    args = parser.parse_args()
    registers = Registers(args.family, args.version)
    faults = Faults(args.control)
    deadline = time.time() + args.seconds
    with open(args.log, "a") as log:
        if args.tcp:
            serve_tcp(args, registers, faults, log, deadline)
        else:
            serve_rtu(args, registers, faults, log, deadline)


if __name__ == "__main__":
    try:
        main()
    except KeyboardInterrupt:
        sys.exit(0)
