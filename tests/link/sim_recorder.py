#!/usr/bin/python3
"""A recorder of the 30-channel family for the link tests.

It answers Modbus RTU requests on a serial device (one end of a pseudo-terminal
pair made by socat) as station 1. The registers follow the register map given
with --initset: each group's records are filled by the names of their items
with the values below, so that a test can tell what a read must give.

Values (k counts records from 1):
  "U  "  UNIT  "USR%02dab" % k                      (8 characters, 4 words)
  "P  "  PILC  "KTX-30 SIMULATED" (16 characters, the rest zero bytes)
         SNO.  "A1234567", PVER "Ver.0115"
  "C  "  TAG "CH%02dTAG " % k, COLR k % 16, TYPE 1, DSPM 2, UNIT 155 + k for
         k <= 12 else k, ZMB1 10 * k, ZMB2 20 * k, ZMP1 250, ZMP2 3, POIN 1,
         TAIS 0, RMIN -k, RMAX 1000 + k
  "A  "  AnTY n, AnVL 100 * n + k (negative for n = 2: -(100 * n + k)),
         AnHC n % 2, AnRL 0
  "I  "  DTAG "DI%dTAG  " % k, DCOL 8 + k, DRMN 0, DRMX 1, DREM k
  "G  "  GNEM "GROUP %d" % k, GCmm: 10 * (k - 1) + mm for k <= 3;
         for k = 4: 128 + mm for mm <= 5, else 0
  "V  "  GTIM 1700000000 + number of present-value reads, low word first;
         DIB 0b10101, ALMB word 0 = 0x0021, PV channel c: 10 * c
A text puts its first character in the low byte of a register.

Faults are read from the --control file: each line "KIND COUNT [ARG]" queues
KIND for the next COUNT requests:
  none       a good answer (to let requests pass before a fault)
  noreply    no answer at all
  badcrc     the right length with a wrong CRC (both bytes)
  badcrclow  the right length with the CRC's low byte wrong, its high byte right
  exception  an exception reply (function + 128, code 2), 5 bytes
  six MS     only the first six bytes of the reply; the rest MS milliseconds
             later, or never when MS is 0
  long       the reply with three bytes too many
  alarm WORD the present values answered well, with WORD as the first word of
             "ALMB" (channels 1 to 4) instead of 0x0021
  skip SECS  the present values answered well, the recorder's clock SECS
             seconds further on from this request on
Every request is logged to --log as "FUNCTION ADDRESS COUNT"; a request whose
CRC is wrong is logged as "crc HEX" and not answered.
"""
import argparse
import os
import struct
import sys
import time

import serial
from pymodbus.datastore import ModbusSequentialDataBlock, ModbusSlaveContext
from pymodbus.factory import ServerDecoder
from pymodbus.utilities import computeCRC


def parse_initset(path):
    groups = []
    with open(path, "rb") as f:
        for raw in f.read().decode("cp932").splitlines():
            if not raw or raw.startswith(";"):
                continue
            fields = [x.strip().replace('"', "") for x in raw.split(",")][:9]
            fields += [""] * (9 - len(fields))
            if fields[0] == "1":
                groups.append({"name": fields[1], "base": int(fields[2]),
                               "words": int(fields[3]), "count": int(fields[4]),
                               "items": {}})
            elif fields[0] == "0" and groups and fields[3] in ("0", "1"):
                groups[-1]["items"][fields[1]] = int(fields[2])
    return groups


def text_words(text, words):
    data = text.encode("cp932")[: 2 * words].ljust(2 * words, b"\0")
    return [data[i] | (data[i + 1] << 8) for i in range(0, 2 * words, 2)]


def u16(value):
    return value & 0xFFFF


class Recorder:
    def __init__(self, groups):
        self.groups = {g["name"]: g for g in groups}
        self.holding = [0] * 65536
        self.inputs = [0] * 65536
        self.present_reads = 0
        self.clock_skip = 0
        self.alarm_word = 0x0021
        self.fill()
        self.context = ModbusSlaveContext(
            hr=ModbusSequentialDataBlock(0, self.holding),
            ir=ModbusSequentialDataBlock(0, self.inputs),
            zero_mode=True)
        self.decoder = ServerDecoder()

    def put(self, group, k, item, values):
        g = self.groups.get(group)
        if g is None or item not in g["items"]:
            return
        table, first = (self.inputs, 30001) if g["base"] < 40001 else (self.holding, 40001)
        at = g["base"] - first + g["words"] * (k - 1) + g["items"][item]
        for i, v in enumerate(values):
            table[at + i] = u16(v)

    def count(self, group):
        return self.groups[group]["count"] if group in self.groups else 0

    def fill(self):
        for k in range(1, self.count("U  ") + 1):
            self.put("U  ", k, "UNIT", text_words("USR%02dab" % k, 4))
        self.put("P  ", 1, "PILC", text_words("KTX-30 SIMULATED", 16))
        self.put("P  ", 1, "SNO.", text_words("A1234567", 8))
        self.put("P  ", 1, "PVER", text_words("Ver.0115", 6))
        for k in range(1, self.count("C  ") + 1):
            self.put("C  ", k, "TAG ", text_words("CH%02dTAG " % k, 4))
            for item, value in (("COLR", k % 16), ("TYPE", 1), ("DSPM", 2),
                                ("UNIT", 155 + k if k <= 12 else k),
                                ("ZMB1", 10 * k), ("ZMB2", 20 * k), ("ZMP1", 250),
                                ("ZMP2", 3), ("POIN", 1), ("TAIS", 0),
                                ("RMIN", -k), ("RMAX", 1000 + k)):
                self.put("C  ", k, item, [value])
        for k in range(1, self.count("A  ") + 1):
            for n in range(1, 5):
                value = 100 * n + k
                self.put("A  ", k, "A%dTY" % n, [n])
                self.put("A  ", k, "A%dVL" % n, [-value if n == 2 else value])
                self.put("A  ", k, "A%dHC" % n, [n % 2])
                self.put("A  ", k, "A%dRL" % n, [0])
        for k in range(1, self.count("I  ") + 1):
            self.put("I  ", k, "DTAG", text_words("DI%dTAG  " % k, 4))
            for item, value in (("DCOL", 8 + k), ("DRMN", 0), ("DRMX", 1), ("DREM", k)):
                self.put("I  ", k, item, [value])
        for k in range(1, self.count("G  ") + 1):
            self.put("G  ", k, "GNEM", text_words("GROUP %d" % k, 8))
            for m in range(1, 11):
                member = 10 * (k - 1) + m if k <= 3 else (128 + m if m <= 5 else 0)
                self.put("G  ", k, "GC%02d" % m, [member])
        self.present()

    def present(self):
        when = 1700000000 + self.present_reads + self.clock_skip
        self.put("V  ", 1, "GTIM", [when & 0xFFFF, when >> 16])
        self.put("V  ", 1, "DIB ", [0b10101])
        self.put("V  ", 1, "ALMB", [self.alarm_word])
        self.put("V  ", 1, "PV  ", [10 * c for c in range(1, 31)])

    def answer(self, pdu):
        request = self.decoder.decode(pdu)
        if request is None:
            return bytes([pdu[0] | 0x80, 1])
        if request.function_code == 4 and "V  " in self.groups:
            g = self.groups["V  "]
            if request.address == g["base"] - 30001:
                self.present()
                self.context.setValues(4, 0, self.inputs[: g["base"] - 30001 + g["words"]])
                self.present_reads += 1
        response = request.execute(self.context)
        return struct.pack(">B", response.function_code) + response.encode()


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
                arg = int(fields[2]) if len(fields) > 2 else 0
                self.queue.append([fields[0], int(fields[1]), arg])
            self.seen = len(lines)
        if not self.queue:
            return None, 0
        kind, _, arg = self.queue[0]
        self.queue[0][1] -= 1
        if self.queue[0][1] <= 0:
            self.queue.pop(0)
        return kind, arg


def read_request(port):
    head = port.read(2)
    if len(head) < 2:
        return None
    function = head[1]
    if function in (3, 4, 6):
        rest = port.read(6)
        frame = head + rest
        return frame if len(frame) == 8 else None
    if function == 16:
        rest = port.read(5)
        if len(rest) < 5:
            return None
        tail = port.read(rest[4] + 2)
        return head + rest + tail
    port.reset_input_buffer()
    return None


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--device", required=True)
    parser.add_argument("--initset", required=True)
    parser.add_argument("--control")
    parser.add_argument("--log")
    parser.add_argument("--ready")
    args = parser.parse_args()

    recorder = Recorder(parse_initset(args.initset))
    faults = Faults(args.control)
    port = serial.Serial(args.device, 19200, timeout=0.2)
    log = open(args.log, "a") if args.log else None
    if args.ready:
        with open(args.ready, "w") as f:
            f.write("ready\n")
    while True:
        frame = read_request(port)
        if frame is None:
            continue
        if struct.pack(">H", computeCRC(frame[:-2])) != frame[-2:]:
            if log:
                log.write("crc %s\n" % frame.hex())
                log.flush()
            continue
        station, function = frame[0], frame[1]
        address, count = struct.unpack(">HH", frame[2:6])
        if log:
            log.write("%d %d %d\n" % (function, address, count))
            log.flush()
        if station != 1:
            continue
        kind, arg = faults.next()
        if kind == "skip":
            recorder.clock_skip += arg
        recorder.alarm_word = arg if kind == "alarm" else 0x0021
        body = bytes([station]) + recorder.answer(frame[1:-2])
        reply = body + struct.pack(">H", computeCRC(body))
        if kind == "noreply":
            continue
        if kind == "badcrc":
            reply = body + bytes([reply[-2] ^ 0x5A, reply[-1] ^ 0xA5])
        elif kind == "badcrclow":
            reply = body + bytes([reply[-2] ^ 0x5A, reply[-1]])
        elif kind == "exception":
            body = bytes([station, function | 0x80, 2])
            reply = body + struct.pack(">H", computeCRC(body))
        elif kind == "long":
            reply = reply + b"\0\0\0"
        if kind == "six":
            port.write(reply[:6])
            port.flush()
            if arg > 0:
                time.sleep(arg / 1000.0)
                port.write(reply[6:])
            continue
        port.write(reply)
        port.flush()


if __name__ == "__main__":
    try:
        main()
    except KeyboardInterrupt:
        sys.exit(0)
