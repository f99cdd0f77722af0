#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""check_openapi.py PROGRAM OPENAPI   asks a running server for every address of the description, in ways that give every status
that it names, and holds status, headers and bodies against it. Statuses that need a fault of the machine count as described by
"default" alone."""
import hashlib
import json
import os
import re
import sys
import urllib.parse
import warnings
import zlib

import jsonschema

sys.path.insert(0, os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "faults"))
import served  # noqa: E402

# What no test can have at will: /health says it when the store is gone.
UNSEEN = {("get", "/health", "503")}


class Description:
    def __init__(self, path):
        self.document = json.load(open(path))
        self.seen = set()
        self.faults = []
        # Schemas refer to each other inside the document. Later versions than Debian's have another class for that.
        warnings.simplefilter("ignore", DeprecationWarning)
        self.resolver = jsonschema.RefResolver("", self.document)

    def resolved(self, value):
        return self.resolver.resolve(value["$ref"])[1] if "$ref" in value else value

    def fault(self, text):
        self.faults.append(text)

    def valid(self, value, schema, where):
        checker = jsonschema.Draft202012Validator(schema, resolver=self.resolver)
        for error in checker.iter_errors(value):
            self.fault(f"{where}: {error.message[:200]}")

    def operation(self, target, method):
        path = urllib.parse.urlsplit(target).path
        for known, item in self.document["paths"].items():
            pattern = "".join("[^/.]+" if piece.startswith("{") else re.escape(piece)
                              for piece in re.split(r"(\{\w+\})", known))
            if re.fullmatch(pattern, path) and method in item:
                return known, item[method]
        raise AssertionError(f"the description lacks {method} {path}")

    def check(self, target, method, answer):
        known, operation = self.operation(target, method)
        status = str(answer.status)
        where = f"{method} {target[:80]} {status}"
        response = operation["responses"].get(status)
        if response is None:
            if answer.status < 400:
                self.fault(f"{where}: this status is not described")
            response = operation["responses"]["default"]
        self.seen.add((method, known, status))
        self.check_response(where, self.resolved(response), answer)
        if answer.status == 401 and "WWW-Authenticate" not in answer.headers:
            self.fault(f"{where}: no WWW-Authenticate")
        if answer.status in (429, 503) and not answer.headers.get("Retry-After", "").isdigit():
            self.fault(f"{where}: no Retry-After")

    def check_response(self, where, response, answer):
        for name, header in response.get("headers", {}).items():
            header = self.resolved(header)
            value = answer.headers.get(name)
            if value is None and header.get("required"):
                self.fault(f"{where}: the header {name} is missing")
            elif value is not None:
                self.valid(value, header["schema"], f"{where}: {name}")
        content = response.get("content")
        if content is None:
            if answer.body and answer.status < 400:
                self.fault(f"{where}: a body that is not described")
            return
        kind = answer.headers.get("Content-Type", "").split(";")[0]
        if kind not in content:
            self.fault(f"{where}: the type {kind!r} is not described")
        elif kind == "application/json":
            self.valid(json.loads(answer.body), content[kind]["schema"], where)
        elif kind == "text/plain":
            self.valid(answer.body.decode(), content[kind]["schema"], where)

    def unseen(self):
        for path, item in self.document["paths"].items():
            for method, operation in item.items():
                for status in operation["responses"]:
                    if status != "default" and (method, path, status) not in self.seen | UNSEEN:
                        yield f"{method} {path} {status}: nothing was answered so"


class Walk:
    """Asks, and checks each answer."""

    def __init__(self, server, description):
        self.server, self.description = server, description

    def __call__(self, target, expected, method="GET", **more):
        answer = self.server.ask(target, method, **more)
        self.description.check(target, method.lower(), answer)
        if answer.status != expected:
            self.description.fault(f"{method} {target[:100]}: {answer.status} instead of {expected}: {answer.body[:200]!r}")
        # A range counts for GET alone.
        if method == "GET" and "Range" not in more:
            self.compare_head(target, answer, more)
        return answer

    def compare_head(self, target, answer, more):
        head = self.server.ask(target, "HEAD", **more)
        names = ("Content-Type", "Content-Length", "ETag", "Cache-Control", "Content-Range", "WWW-Authenticate")
        same = all(head.headers.get(name) == answer.headers.get(name) for name in names)
        # /metrics counts itself.
        if head.body or head.status != answer.status or not (same or target == "/metrics"):
            self.description.fault(f"HEAD {target[:80]}: {head.status} {dict(head.headers)} but GET {dict(answer.headers)}")


def uploads(ask, tokens):
    """Every way in which an upload ends; the file that is there afterwards."""
    file, texture = served.model_file("first"), ("wood.png", PIXEL)
    body = served.upload_body("Chair ../'", file, [texture])
    post = lambda expected, sent, token=tokens["upload"], kind=served.UPLOAD_TYPE, **more: ask(
        "/api/models", expected, "POST", body=sent, token=token, Content_Type=kind, **more)
    key = post(201, body).json()["key"]
    assert key == f"{zlib.crc32(file):08x}", key
    assert post(200, body).json() == {"key": key, "how": "same"}
    post(401, body, token=None)
    post(401, body, token="wrong")
    post(403, body, token=tokens["remove"])
    post(409, served.upload_body("Other", served.model_with_key_of(file, "second")))
    post(415, body, kind="text/plain")
    post(422, served.upload_body("Nothing", b"no model at all"))
    post(400, body[:-1] + b"!")
    post(400, b"OrbU\x02" + body[5:])
    post(400, served.upload_body("", served.model_file("third")))
    post(413, b"x" * (2 << 20))
    ask("/api/models", 411, "POST", body=iter([b"x"]), token=tokens["upload"], Content_Type=served.UPLOAD_TYPE,
        Transfer_Encoding="chunked")
    for number in range(3):
        post(201, served.upload_body(f"Model {number}", served.model_file(f"model {number}")))
    return key, file


def lists(ask, key):
    ask("/api/version?client=1.5", 200)
    assert ask("/api/version?client=0.1&later=1", 200).json()["accepted"] is False
    ask("/api/version?client=%ff", 400)
    groups = ask("/api/groups", 200)
    ask("/api/groups", 304, If_None_Match=groups.headers["ETag"])
    group = groups.json()["groups"][0]
    assert ask("/api/group?name=Upload", 200).json() == group
    ask("/api/group?name=Nothing", 404)
    ask("/api/group", 400)
    place = f"/api/groups/{group['id']}/models"
    page = ask(place + "?limit=3", 200)
    ask(place + "?limit=3", 304, If_None_Match=page.headers["ETag"])
    last = page.json()["models"][-1]
    rest = ask(place + "?" + urllib.parse.urlencode({"after_name": last[0], "after_key": last[1]}), 200).json()
    assert page.json()["more"] and not rest["more"] and len(rest["models"]) == 1, (page.body, rest)
    ask(place + "?limit=0", 400)
    ask("/api/groups/999/models", 404)
    assert ask("/api/search?text=CHAIR", 200).json()["models"] == [{"group": "Upload", "name": "Chair ../'", "key": key}]
    ask("/api/search?text=", 400)
    ask("/health", 200)
    ask("/metrics", 200)


def bytes_of(ask, key, file):
    model = ask(f"/api/models/{key}", 200).json()
    assert hashlib.sha256(file).hexdigest() == model["file"]["sha256"]
    check_bytes(ask, model["file"], "", file)


def check_bytes(ask, blob, ending, expected=None):
    """In parts and anew; the bytes."""
    place = f"/b/{blob['sha256']}{ending}"
    whole = ask(place, 200)
    assert expected is None or whole.body == expected
    assert ask(place, 206, Range="bytes=3-6").body == whole.body[3:7]
    assert ask(place, 206, Range="bytes=-5").body == whole.body[-5:]
    ask(place, 416, Range=f"bytes={len(whole.body)}-")
    ask(place, 304, If_None_Match=whole.headers["ETag"])
    ask("/b/" + "0" * 64 + ending, 404)
    return whole.body


def stored_bytes(ask, post):
    """Of a file that is worth packing."""
    key = post(served.upload_body("Large", served.model_file("large", b"\0" * 20000))).json()["key"]
    blob = ask(f"/api/models/{key}", 200).json()["file"]
    assert blob["codec"] == "zstd" and len(check_bytes(ask, blob, ".zst")) == blob["stored"], blob


def removals(ask, key, tokens):
    place = f"/api/models/{key}"
    ask(place, 401, "DELETE")
    ask(place, 403, "DELETE", token=tokens["upload"])
    ask(place, 204, "DELETE", token=tokens["remove"])
    ask(place, 404, "DELETE", token=tokens["remove"])
    ask(place, 404)


def private(store, description, tokens):
    """All that a private server keeps to itself."""
    with served.Server(store, "--private") as server:
        ask = Walk(server, description)
        ask("/api/version?client=1.5", 200)
        ask("/health", 200)
        for target in ("/api/groups", "/api/group?name=Upload", "/api/groups/1/models", "/api/models/00000000",
                       "/api/search?text=a", "/b/" + "0" * 64, "/b/" + "0" * 64 + ".zst", "/metrics"):
            ask(target, 401)
        ask("/api/groups", 200, token=tokens["read"])


# One white pixel.
PIXEL = bytes.fromhex("89504e470d0a1a0a0000000d4948445200000001000000010802000000907753de0000000c4944415408d763f8ffff3f"
                      "0005fe02fe0def46b80000000049454e44ae426082")


def main():
    program, path = sys.argv[1:]
    description = Description(path)
    store = served.Store(program)
    try:
        tokens = {rights: store.token(rights, rights) for rights in ("read", "upload", "remove")}
        with served.Server(store, "--max-upload", "1M", "--no-previews") as server:
            ask = Walk(server, description)
            key, file = uploads(ask, tokens)
            lists(ask, key)
            bytes_of(ask, key, file)
            stored_bytes(ask, lambda body: ask("/api/models", 201, "POST", body=body, token=tokens["upload"],
                                               Content_Type=served.UPLOAD_TYPE))
            removals(ask, key, tokens)
        private(store, description, tokens)
        store.check()
    finally:
        store.remove()
    faults = description.faults + list(description.unseen())
    print("\n".join(faults) or f"{len(description.seen)} answers are as described")
    return 1 if faults else 0


sys.exit(main())
