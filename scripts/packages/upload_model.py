#!/usr/bin/env python3
# SPDX-License-Identifier: MIT
"""Adds a model to a server of models: upload_model.py ADDRESS TOKEN FILE GROUP. Prints the answer; fails unless it was added."""
import hashlib
import json
import struct
import sys
import urllib.request
from pathlib import Path


def main():
    address, token, file, group = sys.argv[1:]
    model = Path(file).read_bytes()
    head = json.dumps({"name": Path(file).stem, "group": group, "code": "", "note": "", "textures": [],
                       "file": {"size": len(model), "sha256": hashlib.sha256(model).hexdigest()}}).encode()
    body = b"OrbU" + struct.pack("<BI", 1, len(head)) + head + model
    headers = {"Content-Type": "application/vnd.orbivue.model", "Authorization": f"Bearer {token}"}
    request = urllib.request.Request(f"{address}/api/models", body, headers)
    with urllib.request.urlopen(request, timeout=60) as answer:
        print(answer.status, answer.read().decode())
        sys.exit(answer.status != 201)


if __name__ == "__main__":
    main()
