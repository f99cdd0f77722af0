# SPDX-License-Identifier: MIT
"""A model server with a store of its own, and models for it, for tests of the whole program."""
import hashlib
import http.client
import json
import os
import re
import shutil
import signal
import struct
import subprocess
import sys
import tempfile
import zlib

faults = []


def expect(holds, text):
    if not holds:
        faults.append(text)


def tell():
    """Ends the program with all that did not hold."""
    print("\n".join(faults) or "all as it should be")
    sys.exit(1 if faults else 0)


UPLOAD_TYPE = "application/vnd.orbivue.model"


def chunk(number, content):
    return struct.pack("<HI", number, len(content) + 6) + content


def model_file(text, padding=b""):
    """A 3DS file of one triangle. The text makes it another file than others; padding lies in a chunk that nobody knows,
    the last bytes of the file."""
    points = struct.pack("<H9f", 3, 0, 0, 0, 1, 0, 0, 0, 1, 0)
    mesh = chunk(0x4110, points) + chunk(0x4120, struct.pack("<H4H", 1, 0, 1, 2, 0))
    name = hashlib.sha256(text.encode()).hexdigest()[:10].encode() + b"\0"
    edit = chunk(0x3D3D, chunk(0x3D3E, struct.pack("<I", 3)) + chunk(0x4000, name + chunk(0x4100, mesh)))
    return chunk(0x4D4D, chunk(2, struct.pack("<I", 3)) + edit + chunk(0x7777, padding))


def model_with_key_of(file, text):
    """Another file with the same key: a CRC is followed backwards for the last four bytes, which are padding."""
    table = [zlib.crc32(bytes([i ^ 0xFF])) ^ 0xFF000000 for i in range(256)]
    before = {entry >> 24: (entry << 8 ^ i) & 0xFFFFFFFF for i, entry in enumerate(table)}
    prefix, state = model_file(text, bytes(4))[:-4], zlib.crc32(file) ^ 0xFFFFFFFF
    for _ in range(4):
        state = (state << 8 & 0xFFFFFFFF) ^ before[state >> 24]
    result = prefix + struct.pack("<I", state ^ zlib.crc32(prefix) ^ 0xFFFFFFFF)
    assert zlib.crc32(result) == zlib.crc32(file) and result != file
    return result


def part(content):
    return {"size": len(content), "sha256": hashlib.sha256(content).hexdigest()}


def upload_body(name, file, textures=(), group="Upload", **head):
    """The body of an upload; further members of the head replace those that are right."""
    values = {"name": name, "group": group, "code": "", "note": "", "file": part(file),
              "textures": [{"name": texture, **part(content)} for texture, content in textures], **head}
    text = json.dumps(values).encode()
    return b"OrbU\x01" + struct.pack("<I", len(text)) + text + file + b"".join(content for _, content in textures)


class Answer:
    def __init__(self, response):
        self.status = response.status
        self.headers = response.headers
        self.body = response.read()

    def json(self):
        return json.loads(self.body)


class Store:
    """A place for a store in a folder, or on the server of run_with_postgres.sh."""

    def __init__(self, program, folder=None):
        self.program = program
        self.folder = folder or tempfile.mkdtemp(prefix="orbivue-served.")
        self.owned = folder is None
        self.place = os.path.join(self.folder, "store.sqlite")

    def run(self, *arguments, check=True):
        done = subprocess.run([self.program, *arguments, "--store", self.place], capture_output=True, text=True, timeout=120)
        if check and done.returncode != 0:
            raise AssertionError(f"{arguments} ended with {done.returncode}: {done.stderr}")
        return done.stdout.strip()

    def token(self, name, rights):
        return self.run("token", "create", name, "--rights", rights)

    def check(self):
        """Reads all bytes; raises where anything is wrong."""
        text = self.run("check", "--full")
        assert ", 0 faults" in text, text

    def remove(self):
        if self.owned:
            shutil.rmtree(self.folder, ignore_errors=True)


class Server:
    """A running server; a context that ends it."""

    def __init__(self, store, *options, before=None):
        self.store = store
        self.log = open(os.path.join(store.folder, "server.log"), "a")
        environment = {**os.environ, "XDG_CACHE_HOME": os.path.join(store.folder, "cache")}
        self.process = subprocess.Popen(
            [store.program, "serve", "--store", store.place, "--listen", "127.0.0.1:0",
             "--cache-dir", os.path.join(store.folder, "hot"), *options],
            stdout=subprocess.PIPE, stderr=self.log, text=True, env=environment, preexec_fn=before)
        line = self.process.stdout.readline()
        found = re.match(r"listening on http://127\.0\.0\.1:(\d+)/", line)
        assert found, f"the server said {line!r}; {open(self.log.name).read()}"
        self.port = int(found[1])

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.stop()

    def stop(self):
        if self.process.poll() is None:
            self.process.send_signal(signal.SIGTERM)
            try:
                self.process.wait(20)
            except subprocess.TimeoutExpired:
                self.kill()
                raise AssertionError("the server did not end")
        self.log.close()
        return self.process.returncode

    def kill(self):
        self.process.kill()
        self.process.wait()

    def ask(self, target, method="GET", body=None, token=None, timeout=30, **headers):
        connection = http.client.HTTPConnection("127.0.0.1", self.port, timeout=timeout)
        fields = {name.replace("_", "-"): value for name, value in headers.items()}
        if token:
            fields["Authorization"] = "Bearer " + token
        connection.request(method, target, body, fields)
        answer = Answer(connection.getresponse())
        connection.close()
        return answer

    def upload(self, body, token=None, **headers):
        return self.ask("/api/models", "POST", body, token, Content_Type=UPLOAD_TYPE, **headers)
