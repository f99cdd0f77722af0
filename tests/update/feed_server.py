#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""feed_server.py CERTIFICATE.pem [FEED.xml]   answers over TLS on a free port, which it prints, until it is killed. The path says
how: as a good server of a list of versions does, or as none should."""
import gzip
import http.server
import ssl
import sys
import time

FEED = b"""<?xml version="1.0"?><rss xmlns:sparkle="https://orbivue.example/sparkle"><channel><item>
<sparkle:version>9.0</sparkle:version><link>https://orbivue.example/9</link></item></channel></rss>"""
if len(sys.argv) > 2:
    with open(sys.argv[2], "rb") as file:
        FEED = file.read()
BOMB = gzip.compress(bytes(50_000_000), 1)  # packed before anybody waits for it


class Handler(http.server.BaseHTTPRequestHandler):
    def answer(self, body, status=200, **headers):
        self.send_response(status)
        for name, value in {"Content-Length": len(body), **headers}.items():
            self.send_header(name.replace("_", "-"), value)
        self.end_headers()
        self.wfile.write(body)

    def send_forever(self, piece, seconds):
        self.send_response(200)
        self.end_headers()
        while True:
            self.wfile.write(piece)
            time.sleep(seconds)

    def do_GET(self):
        own = "https://127.0.0.1:%d" % self.server.server_port
        to = {"/twice": own + "/once", "/once": own + "/feed", "/loop": own + "/loop",
              "/to-http": own.replace("https", "http") + "/feed", "/to-file": "file:///etc/passwd",
              "/to-user": own.replace("//", "//name:secret@") + "/feed"}
        answers = {
            "/feed": lambda: self.answer(FEED),
            "/html": lambda: self.answer(b"<!DOCTYPE html><html><body><p>Sign in to this network<br></body></html>"),
            "/announced": lambda: self.answer(b"", Content_Length=1 << 40),
            "/endless": lambda: self.send_forever(b" " * 65536, 0),
            "/drip": lambda: self.send_forever(b" ", 0.02),
            "/silent": lambda: time.sleep(30),
            "/bomb": lambda: self.answer(BOMB, Content_Encoding="gzip"),
            "/cut": lambda: self.answer(FEED, Content_Length=len(FEED) + 1),
        }
        try:
            if self.path in to:
                self.answer(b"", 302, Location=to[self.path])
            elif self.path in answers:
                answers[self.path]()
            else:
                self.answer(b"no such page", 404)
        except OSError:
            pass  # the client has had enough

    def log_message(self, *_):
        pass


server = http.server.ThreadingHTTPServer(("127.0.0.1", 0), Handler)
context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
context.load_cert_chain(sys.argv[1])
server.socket = context.wrap_socket(server.socket, server_side=True)
server.daemon_threads = True
print(server.server_port, flush=True)
server.serve_forever()
