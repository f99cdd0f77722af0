#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""full_disk.py PROGRAM   a server whose disk gets full: uploads are told so, all that was acknowledged stays, and it goes on when
there is room again. The disk is a small one in memory, in a mount namespace of its own; ends with 77 where
there can be none."""
import os
import random
import subprocess
import sys
import tempfile
import zlib

import served


def in_own_namespace():
    if os.environ.get("ORBIVUE_OWN_MOUNTS"):
        return
    as_root = ["unshare", "-m"] if os.getuid() == 0 else ["unshare", "-rm"]
    if subprocess.run(as_root + ["true"], capture_output=True).returncode != 0:
        print("full_disk.py: no mount namespace can be had here")
        sys.exit(77)
    os.environ["ORBIVUE_OWN_MOUNTS"] = "1"
    os.execvp("unshare", as_root + [sys.executable, *sys.argv])


def fill(server, token, series="first"):
    """Uploads until it is refused; the keys that were acknowledged, and the refusal."""
    kept = []
    for number in range(1000):
        file = served.model_file(f"{series} {number}", random.Random(f"{series} {number}").randbytes(200_000))
        answer = server.upload(served.upload_body(f"m{number}", file), token)
        if answer.status != 201:
            return kept, answer
        kept.append(f"{zlib.crc32(file):08x}")
    raise AssertionError("the disk never got full")


def main():
    in_own_namespace()
    folder = tempfile.mkdtemp(prefix="orbivue-full.")
    if subprocess.run(["mount", "-t", "tmpfs", "-o", "size=16m", "tmpfs", folder]).returncode != 0:
        sys.exit(77)
    try:
        store = served.Store(sys.argv[1], folder)
        tokens = {rights: store.token(rights, rights) for rights in ("upload", "remove")}
        with served.Server(store, "--upload-rate", "0", "--no-previews", "--cache-size", "1M") as server:
            kept, refusal = fill(server, tokens["upload"])
            assert refusal.status == 507 and refusal.json()["error"]["code"] == "no_space", (refusal.status, refusal.body)
            assert len(kept) > 10, kept
            for key in kept:
                assert server.ask(f"/api/models/{key}").status == 200, key
            store.check()
            # A removal is written to the log first, so it needs some room, too.
            removal = server.ask(f"/api/models/{kept[0]}", "DELETE", token=tokens["remove"])
            assert removal.status in (204, 507), (removal.status, removal.body)
            subprocess.run(["mount", "-o", "remount,size=24m", folder], check=True)
            again, refusal = fill(server, tokens["upload"], "again")
            assert len(again) > 5 and refusal.status == 507, (len(again), refusal.status, refusal.body)
        store.check()
        print(f"full after {len(kept)} models, and after {len(again)} more with more room")
    finally:
        subprocess.run(["umount", "-l", folder])
        os.rmdir(folder)


main()
