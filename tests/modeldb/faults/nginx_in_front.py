#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""nginx_in_front.py PROGRAM LIST_GROUPS CONFIGURATION   the configuration that packagers get, with other ports and files: TLS, bytes from
nginx's cache, also when the server is away, and a client that believes no certificate which nobody vouches for. Ends with 77
where nginx is not installed."""
import http.client
import os
import random
import re
import shutil
import socket
import ssl
import subprocess
import sys
import time

import served
from served import expect

def free_port():
    with socket.socket() as asked:
        asked.bind(("127.0.0.1", 0))
        return asked.getsockname()[1]


def make_certificate(folder):
    """For "localhost", signed by itself."""
    paths = os.path.join(folder, "cert.pem"), os.path.join(folder, "key.pem")
    subprocess.run(["openssl", "req", "-x509", "-newkey", "ec", "-pkeyopt", "ec_paramgen_curve:prime256v1", "-nodes", "-days", "2",
                    "-subj", "/CN=localhost", "-addext", "subjectAltName=DNS:localhost", "-out", paths[0], "-keyout", paths[1]],
                   check=True, capture_output=True)
    return paths


class Nginx:
    """nginx with the given configuration, adapted to a folder of the test's own."""

    def __init__(self, configuration, folder, server_port):
        self.folder, self.port = folder, free_port()
        self.cert, key = make_certificate(folder)
        text = open(configuration).read()
        for pattern, value in ((r"listen \[::\]:443[^;]*;", ""), (r"listen 443", f"listen 127.0.0.1:{self.port}"),
                               (r"server_name [^;]*", "server_name localhost"), (r"(ssl_certificate) [^;]*", rf"\1 {self.cert}"),
                               (r"(ssl_certificate_key) [^;]*", rf"\1 {key}"), (r"/var/cache/nginx/orbivue", f"{folder}/cache"),
                               (r"server 127\.0\.0\.1:8095", f"server 127.0.0.1:{server_port}")):
            text, count = re.subn(pattern, value, text)
            assert count > 0, f"the configuration lacks {pattern}"
        open(os.path.join(folder, "site.conf"), "w").write(text)
        user = "user root;" if os.getuid() == 0 else ""
        temporary = " ".join(f"{kind}_temp_path {folder}/{kind};" for kind in
                             ("client_body", "proxy", "fastcgi", "uwsgi", "scgi"))
        open(os.path.join(folder, "nginx.conf"), "w").write(
            f"{user} daemon off; worker_processes 1; pid {folder}/pid; error_log {folder}/error.log;"
            f"events {{}} http {{ access_log off; {temporary} include {folder}/site.conf; }}")
        self.process = subprocess.Popen(["nginx", "-p", folder, "-c", os.path.join(folder, "nginx.conf")],
                                        stderr=subprocess.PIPE, text=True)
        self.wait()

    def wait(self):
        for _ in range(100):
            if self.process.poll() is not None:
                raise AssertionError(self.process.stderr.read())
            try:
                socket.create_connection(("127.0.0.1", self.port), timeout=1).close()
                return
            except OSError:
                time.sleep(0.05)
        raise AssertionError("nginx does not listen")

    def ask(self, target, method="GET", body=None, **headers):
        context = ssl.create_default_context(cafile=self.cert)
        connection = http.client.HTTPSConnection("localhost", self.port, context=context, timeout=30)
        connection.request(method, target, body, {name.replace("_", "-"): value for name, value in headers.items()})
        answer = served.Answer(connection.getresponse())
        connection.close()
        return answer

    def stop(self):
        self.process.terminate()
        self.process.wait(20)


def check_cache(nginx, server, store, token):
    file = served.model_file("cached", random.Random(1).randbytes(300_000))
    answer = nginx.ask("/api/models", "POST", served.upload_body("cached", file), Authorization="Bearer " + token,
                       Content_Type=served.UPLOAD_TYPE)
    expect(answer.status == 201, f"an upload through nginx: {answer.status} {answer.body[:200]!r}")
    other = served.model_file("not cached")
    server.upload(served.upload_body("not cached", other), token)
    blob = "/b/" + served.part(file)["sha256"]
    first = nginx.ask(blob)
    second = nginx.ask(blob)
    expect(first.body == second.body == file, "wrong bytes")
    server.stop()  # which writes the last lines of its log
    asked = open(server.log.name).read().count(blob)
    expect(asked == 1, f"{asked} of two requests reached the server")
    kept = nginx.ask(blob)
    expect(kept.status == 200 and kept.body == file, f"with the server away: {kept.status}")
    part = nginx.ask(blob, Range="bytes=1000-1999")
    expect(part.status == 206 and part.body == file[1000:2000], f"a range out of the cache: {part.status}")
    same = nginx.ask(blob, If_None_Match=first.headers["ETag"])
    expect(same.status == 304 and not same.body, f"a revalidation out of the cache: {same.status}")
    away = nginx.ask("/b/" + served.part(other)["sha256"])
    expect(away.status == 502, f"what nginx does not have: {away.status}")


def check_private(nginx_of, store, tokens):
    """Nothing of a private server stays in a cache that others may ask."""
    file = served.model_file("secret", b"secret" * 100)
    with served.Server(store, "--private", "--no-previews", "--trust-proxy", "127.0.0.1") as server:
        expect(server.upload(served.upload_body("secret", file), tokens["upload"]).status == 201, "the private upload")
        nginx = nginx_of(server.port)
        try:
            blob = "/b/" + served.part(file)["sha256"]
            for _ in range(2):
                answer = nginx.ask(blob, Authorization="Bearer " + tokens["read"])
                expect(answer.body == file, f"with a token: {answer.status}")
                answer = nginx.ask(blob)
                expect(answer.status == 401, f"without a token: {answer.status}")
        finally:
            nginx.stop()


def check_certificates(nginx, lister):
    """The client refuses the certificate until the system trusts it; and that of another name always."""
    def run(host, *before):
        done = subprocess.run([*before, lister, f"https://{host}:{nginx.port}"], capture_output=True, text=True, timeout=60)
        return done.returncode, done.stdout
    code, said = run("localhost")
    expect(code == 1 and "Upload" not in said and said, f"an unknown certificate: {code} {said}")
    bundle = "/etc/ssl/certs/ca-certificates.crt"
    trusting = ["unshare", "-m" if os.getuid() == 0 else "-rm", "sh", "-c",
                f'mount --bind "{nginx.cert}" {bundle} || exit 77; exec "$@"', "sh"]
    code, said = run("localhost", *trusting)
    if code in (77, 1) and not said:
        print("no mount namespace can be had here: a trusted certificate was not tried")
        return
    expect(code == 0 and "Upload" in said, f"a trusted certificate: {code} {said}")
    code, said = run("127.0.0.1", *trusting)
    expect(code == 1 and "Upload" not in said, f"the certificate of another name: {code} {said}")


def main():
    program, lister, configuration = sys.argv[1:]
    if not shutil.which("nginx") or not shutil.which("openssl"):
        print("nginx or openssl is not installed (Debian: nginx-light, openssl)")
        sys.exit(77)
    store = served.Store(program)
    folders = [os.path.join(store.folder, name) for name in ("nginx1", "nginx2")]
    for folder in folders:
        os.makedirs(folder)
    try:
        tokens = {rights: store.token(rights, rights) for rights in ("read", "upload")}
        server = served.Server(store, "--no-previews", "--trust-proxy", "127.0.0.1")
        nginx = Nginx(configuration, folders[0], server.port)
        try:
            server.upload(served.upload_body("first", served.model_file("first")), tokens["upload"])
            check_certificates(nginx, lister)
            check_cache(nginx, server, store, tokens["upload"])
        finally:
            nginx.stop()
            server.stop()
        check_private(lambda port: Nginx(configuration, folders[1], port), store, tokens)
        store.check()
    finally:
        store.remove()


main()
served.tell()
