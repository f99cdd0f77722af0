#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""hostile_clients.py PROGRAM   slow, broken and malicious clients of a running server: others are served as if they were
not there, nothing that is no model is kept, and names are text. The malformed files of a corpus (ORBIVUE_CORPUS, or shared/corpus beside the
checkout) are uploaded where there is one."""
import concurrent.futures
import os
import random
import socket
import subprocess
import sys
import time
import zlib

import served
from served import expect

def connect(server):
    made = socket.create_connection(("127.0.0.1", server.port), timeout=20)
    made.setsockopt(socket.IPPROTO_TCP, socket.TCP_NODELAY, 1)
    return made


def send_and_read(server, sent, end=True):
    """All that the server answers until it closes; None where it does not within 20 s."""
    with connect(server) as line:
        try:
            line.sendall(sent)
            if end:
                line.shutdown(socket.SHUT_WR)
        except OSError:
            pass  # it may refuse before it has all
        got = b""
        try:
            while piece := line.recv(65536):
                got += piece
        except ConnectionError:
            return got
        except TimeoutError:
            return None
        return got


def head(*lines, first="POST /api/models HTTP/1.1"):
    return "\r\n".join((first, "Host: a", *lines, "", "")).encode()


def broken_requests(token):
    """Name, bytes, and the statuses that may answer them; 0: none, the connection ends."""
    kind, right = "Content-Type: " + served.UPLOAD_TYPE, "Authorization: Bearer " + token
    body = served.upload_body("broken", served.model_file("broken"))
    upload = lambda *lines: head(kind, right, *lines)
    length = f"Content-Length: {len(body)}"
    get = head(first="GET /health HTTP/1.1")
    yield "a length and chunks", upload(length, "Transfer-Encoding: chunked") + b"0\r\n\r\n" + get, {400}
    yield "a length of terabytes", upload("Content-Length: 9999999999999") + body, {413}
    yield "a length that is too long by one", upload(f"Content-Length: {len(body) + 1}") + body, {0, 400}
    yield "a length that is too short", upload(f"Content-Length: {len(body) - 1}") + body, {400}
    yield "no end of the head", head(kind)[:-2], {0, 400}
    yield "a head of a megabyte", b"GET / HTTP/1.1\r\n" + b"X-A: b\r\n" * 131072, {0, 431}
    yield "a field of a megabyte", b"GET / HTTP/1.1\r\nHost: a\r\nX: " + b"a" * (1 << 20), {0, 431}
    yield "an address of a megabyte", b"GET /" + b"a" * (1 << 20) + b" HTTP/1.1\r\n\r\n", {0, 414, 431}
    yield "ten ranges", head("Range: bytes=" + ",".join("0-1" for _ in range(10)), first="GET /health HTTP/1.1"), {200}
    yield "an upload to nowhere", head(kind, right, length, first="POST /b/x HTTP/1.1") + body, {404, 405}


def check_broken(server, token):
    for name, sent, statuses in broken_requests(token):
        # The head is followed by nothing that might count as a second request.
        got = send_and_read(server, sent)
        if got is None:
            expect(False, f"{name}: neither an answer nor an end")
            continue
        status = int(got[9:12]) if got.startswith(b"HTTP/1.") else 0
        expect(status in statuses, f"{name}: {status}, not {statuses}: {got[:200]!r}")
        if statuses != {200}:
            expect(got.count(b"HTTP/1.1 2") == 0, f"{name}: a second request was seen: {got[:500]!r}")
        expect(server.ask("/health").status == 200, f"{name}: the server is ill afterwards")


def drip(line, sent, until):
    """Sends a byte a second; how long the server let that happen."""
    start = time.monotonic()
    try:
        for byte in sent:
            line.sendall(bytes([byte]))
            line.settimeout(1)
            try:
                if not line.recv(1):
                    break
            except TimeoutError:
                pass
            if time.monotonic() - start > until:
                break
    except OSError:
        pass
    line.close()
    return time.monotonic() - start


def check_slow(server, token, blob):
    """Slow ones hold their connections; meanwhile a quick client asks."""
    slow_body = head("Content-Type: " + served.UPLOAD_TYPE, "Authorization: Bearer " + token, "Content-Length: 4000000")
    idle, threads = [connect(server) for _ in range(100)], concurrent.futures.ThreadPoolExecutor(90)
    heads, bodies = [], []
    for _ in range(40):
        heads.append(threads.submit(drip, connect(server), b"GET / HTTP/1.1\r\n" + b"X: y\r\n" * 100, 40))
        line = connect(server)
        line.sendall(slow_body)
        bodies.append(threads.submit(drip, line, b"OrbU" + bytes(100), 9))
    readers = []
    for _ in range(30):
        line = connect(server)
        line.setsockopt(socket.SOL_SOCKET, socket.SO_RCVBUF, 4096)
        line.sendall(head(first=f"GET /b/{blob} HTTP/1.1"))
        readers.append(line)  # and never reads
    times = []
    for number in range(60):
        start = time.monotonic()
        target = ("/api/groups", "/api/groups/1/models", "/health", f"/b/{blob}")[number % 4]
        expect(server.ask(target).status == 200, f"{target} failed beside slow clients")
        times.append(time.monotonic() - start)
        time.sleep(0.1)
    added = server.upload(served.upload_body("beside slow ones", served.model_file("beside")), token)
    expect(added.status == 201, f"an upload beside slow clients: {added.status}")
    expect(sorted(times)[57] < 1, f"beside slow clients an answer took {max(times):.2f} s")
    longest = max(done.result() for done in heads)
    expect(longest < 16, f"a head of a byte a second was read for {longest:.0f} s")
    for line in idle + readers:
        line.close()
    threads.shutdown()
    print(f"beside 210 slow clients: median {sorted(times)[30] * 1000:.1f} ms, worst {max(times) * 1000:.0f} ms; "
          f"slow heads were cut after {longest:.0f} s")


def check_cuts(server, token):
    """Uploads that end at any place keep nothing."""
    file = served.model_file("cut", bytes(random.Random(1).randbytes(300000)))
    body = served.upload_body("cut", file)
    sent = head("Content-Type: " + served.UPLOAD_TYPE, "Authorization: Bearer " + token,
                f"Content-Length: {len(body)}") + body
    dice = random.Random(2)
    for _ in range(30):
        with connect(server) as line:
            line.sendall(sent[:dice.randrange(len(sent))])
            if dice.randrange(2):  # a reset instead of an end
                line.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, b"\1\0\0\0\0\0\0\0")
    expect(server.ask(f"/api/models/{zlib.crc32(file):08x}").status == 404, "a cut upload was kept")
    expect(server.upload(body, token).status == 201, "the whole one was refused")


def bad_models():
    good = served.model_file("good")
    yield "nothing", b""
    yield "half a model", good[:len(good) // 2]
    yield "noise", random.Random(3).randbytes(5000)
    yield "a chunk of 4 GB", b"MM" + b"\xff\xff\xff\xff" + good[6:40]


def check_bad_models(server, store, token, corpus):
    before = store.run("list", "--json")
    for name, file in bad_models():
        answer = server.upload(served.upload_body(name, file), token)
        reason = answer.json().get("error", {}).get("message", "")
        expect(answer.status == 422 and len(reason) > 5, f"{name}: {answer.status} {answer.body[:200]!r}")
        expect(server.ask(f"/api/models/{zlib.crc32(file):08x}").status == 404, f"{name}: it was kept")
    expect(store.run("list", "--json") == before, "bad models left something")
    folder = os.path.join(corpus, "malformed")
    if not os.path.isdir(folder):
        return
    kept = refused = 0
    for name in sorted(os.listdir(folder)):
        file = open(os.path.join(folder, name), "rb").read()
        # Some are odd, but whole; all others get a reason.
        answer = server.upload(served.upload_body(name, file, group="Malformed"), token, timeout=60)
        is_kept = answer.status in (200, 201, 409)
        reason = "" if is_kept else answer.json()["error"]["message"]
        expect(is_kept or (answer.status == 422 and len(reason) > 5), f"{name}: {answer.status} {reason}")
        there = server.ask(f"/api/models/{zlib.crc32(file):08x}").status == 200
        expect(there == is_kept, f"{name}: refused and kept, or the other way round")
        kept, refused = kept + is_kept, refused + (not is_kept)
    expect(refused > 0, "no malformed file was refused")
    print(f"malformed files: {refused} refused, {kept} odd, but whole")


NAMES = ("../../../../etc/passwd", "/etc/passwd", "..", ".", "C:\\windows\\x", "a/b\\c", "x'; DROP TABLE models; --",
         "%' OR 1=1 --", "%2e%2e%2f", "<script>alert(1)</script>", "a\nb\tc", "\u202etxt.exe", "$(reboot)`reboot`",
         "{\"a\":1}", "a\"b", "-rf", "CON", " ", "\U0001f600" * 49, "e\u0301", "%s%n%d", "\x7f\x01")


def check_names(server, store, token):
    tree = set(os.listdir(store.folder))
    for number, name in enumerate(NAMES):
        file = served.model_file(f"name {number}")
        texture = (name, served.part(b"")["sha256"].encode())
        answer = server.upload(served.upload_body(name, file, group="g" + name), token)
        expect(answer.status == 201, f"{name!r}: {answer.status} {answer.body[:150]!r}")
        model = server.ask(f"/api/models/{zlib.crc32(file):08x}").json()
        expect((model.get("name"), model.get("group")) == (name, "g" + name), f"{name!r} became {model}")
    groups = {group["name"] for group in server.ask("/api/groups").json()["groups"]}
    expect(groups >= {"g" + name for name in NAMES}, "groups were lost")
    expect(set(os.listdir(store.folder)) == tree, "a name became a file")
    out = os.path.join(store.folder, "out")
    subprocess.run([store.program, "export", "--store", store.place, "--into", out], capture_output=True, timeout=60)
    files = sum(len(names) for _, _, names in os.walk(out))
    expect(files >= len(NAMES), f"only {files} files were exported")
    expect(set(os.listdir(store.folder)) == tree | {"out"}, "an exported name led out of the folder")


def main():
    program = sys.argv[1]
    root = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "..")
    corpus = os.environ.get("ORBIVUE_CORPUS") or os.path.join(root, "..", "shared", "corpus")
    store = served.Store(program)
    try:
        token = store.token("test", "upload")
        with served.Server(store, "--upload-rate", "0", "--no-previews") as server:
            large = served.model_file("large", random.Random(4).randbytes(8 << 20))
            expect(server.upload(served.upload_body("large", large), token).status == 201, "the first upload")
            check_broken(server, token)
            check_cuts(server, token)
            check_slow(server, token, served.part(large)["sha256"])
            check_bad_models(server, store, token, corpus)
            check_names(server, store, token)
        store.check()
    finally:
        store.remove()


main()
served.tell()
