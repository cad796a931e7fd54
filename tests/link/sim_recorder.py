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
         DIB 0b10101, ALMB word 0 = 0x0021, PV channel c: 10 * c, or with
         --waves a slow wave around it (for pictures, not for the tests)
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
  cardout    the card is taken out after COUNT more requests (status 255 from
             then on)
Every request is logged to --log as "FUNCTION ADDRESS COUNT"; a request whose
CRC is wrong is logged as "crc HEX" and not answered.

The memory card (--card MANIFEST): one file a line, fields separated by blanks:
  NAME TIME SIZE MEASUREMENT HEAD RECORD EVENTS
NAME up to 8 characters, TIME seconds since 1970/1/1, SIZE the size the list
shows, MEASUREMENT the path of the bytes served (HEAD bytes of head, then
records of RECORD bytes each), EVENTS the path of the event data or "-". A
manifest that is missing means no card; an empty one a card without files.
Commands written to group "Q  " are served as the program expects them (see
src/link/card_read.h); each command's status reads back busy once, then 0, 254
or 255. Every command is logged to --card-log as "CNTL INDEX FILE".
"""
import argparse
import math
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


def words_of(data):
    if len(data) % 2:
        data = data + b"\0"
    return [data[i] | (data[i + 1] << 8) for i in range(0, len(data), 2)]


def load_card(path):
    if not path or not os.path.exists(path):
        return None
    files = []
    with open(path, encoding="utf-8") as f:
        for line in f.read().splitlines():
            fields = line.split()
            if len(fields) != 7:
                continue
            name, when, size, data, head, record, events = fields
            with open(data, "rb") as d:
                body = d.read()
            event_bytes = b""
            if events != "-":
                with open(events, "rb") as e:
                    event_bytes = e.read()
            files.append({"name": name, "time": int(when), "size": int(size),
                          "bytes": body, "head": int(head), "record": int(record),
                          "events": event_bytes})
    return files


class Recorder:
    def __init__(self, groups, card_path=None, card_log=None, waves=False):
        self.waves = waves
        self.card_path = card_path
        self.card = None
        self.card_loaded = False
        self.card_log = card_log
        self.pending = None
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
        self.put("V  ", 1, "PV  ", [self.value(c) for c in range(1, 31)])

    def value(self, c):
        if not self.waves:
            return 10 * c
        phase = self.present_reads / (12.0 + c) + c
        return int(10 * c + 60 * math.sin(phase) + 15 * math.sin(7.3 * phase)) & 0xFFFF

    def group_address(self, name):
        g = self.groups.get(name)
        if g is None:
            return None
        return g["base"] - (30001 if g["base"] < 40001 else 40001)

    def card_command(self):
        if not self.card_loaded:
            self.card = load_card(self.card_path)
            self.card_loaded = True
        q = self.groups["Q  "]
        base = self.group_address("Q  ")
        block = self.context.getValues(3, base, q["words"])
        items = q["items"]
        index = block[items["INDX"]] | (block[items["INDX"] + 1] << 16)
        number = block[items["FILE"]]
        command = block[items["CNTL"]]
        if self.card_log:
            with open(self.card_log, "a") as f:
                f.write("%d %d %d\n" % (command, index, number))
        status, window = self.card_status(command, index, number)
        self.context.setValues(3, base + items["CNTL"], [command])
        if window:
            w = self.groups["W  "]
            start = self.group_address("W  ") + w["items"].get("WBUF", 0)
            self.context.setValues(4, start, window[: w["words"]])
        self.pending = [1, status]

    def card_status(self, command, index, number):
        if self.card is None:
            return 255, None
        if command == 1:
            if not self.card:
                return 254, None
            files = self.card[index:]
            window = [len(files)]
            for f in files[:10]:
                window += text_words(f["name"], 4)
                window += [f["time"] & 0xFFFF, f["time"] >> 16]
                window += [f["size"] & 0xFFFF, f["size"] >> 16]
            return 0, window
        if not 1 <= number <= len(self.card):
            return 254, None
        f = self.card[number - 1]
        records = (len(f["bytes"]) - f["head"]) // f["record"] if f["record"] else 0
        if command == 2 and index == 0:
            events = len(f["events"])
            return 0, [f["head"], records & 0xFFFF, records >> 16, f["record"],
                       events & 0xFFFF, events >> 16]
        if command == 2:
            start = 1000 * (index - 1)
            return 0, words_of(f["bytes"][start: min(start + 1000, f["head"])])
        if command == 4:
            per_block = max(1, 1000 // f["record"])
            count = min(per_block, records - index)
            start = f["head"] + index * f["record"]
            return 0, words_of(f["bytes"][start: start + count * f["record"]])
        if command == 5:
            return 0, words_of(f["events"][index: index + 1000])
        return 0, None

    def answer(self, pdu):
        request = self.decoder.decode(pdu)
        if request is None:
            return bytes([pdu[0] | 0x80, 1])
        card_block = self.group_address("Q  ")
        if request.function_code == 3 and card_block is not None and \
                request.address == card_block and self.pending:
            if self.pending[0] > 0:
                self.pending[0] -= 1
            else:
                items = self.groups["Q  "]["items"]
                status = 255 if self.card is None else self.pending[1]
                self.context.setValues(3, card_block + items["CNTL"], [status])
                self.pending = None
        if request.function_code in (6, 16) and card_block is not None and \
                request.address == card_block:
            response = request.execute(self.context)
            self.card_command()
            return struct.pack(">B", response.function_code) + response.encode()
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
        self.card_out_in = None

    def refresh(self):
        if self.path and os.path.exists(self.path):
            with open(self.path) as f:
                lines = [x.split() for x in f.read().splitlines() if x.strip()]
            for fields in lines[self.seen:]:
                arg = int(fields[2]) if len(fields) > 2 else 0
                if fields[0] == "cardout":
                    self.card_out_in = int(fields[1])
                    continue
                self.queue.append([fields[0], int(fields[1]), arg])
            self.seen = len(lines)

    def card_out(self):
        """True once the card's time to go has come."""
        if self.card_out_in is None:
            return False
        self.card_out_in -= 1
        if self.card_out_in > 0:
            return False
        self.card_out_in = None
        return True

    def next(self):
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
    parser.add_argument("--card")
    parser.add_argument("--card-log")
    parser.add_argument("--waves", action="store_true")
    args = parser.parse_args()

    recorder = Recorder(parse_initset(args.initset), args.card, args.card_log, args.waves)
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
        faults.refresh()
        if faults.card_out():
            recorder.card = None
            recorder.card_loaded = True
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
