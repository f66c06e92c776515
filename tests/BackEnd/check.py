#!/usr/bin/python3
"""Runs the back ends of docs/backend.md against a sandbox, and holds its test vectors.

Usage: check.py SANDBOX FOLDER_OF_CLIENTS VECTORS
"""

import base64
import json
import pathlib
import re
import shutil
import subprocess
import sys

sys.path.append(str(pathlib.Path(__file__).parent.parent / "support"))
from sandbox import SECRET, Sandbox  # noqa: E402
import result as example  # noqa: E402

PROGRAM, CLIENTS, VECTORS = sys.argv[1:4]
UNKNOWN = 'refused: "session_id": unknown'
failures = []


def run(*command, given=None):
    return subprocess.run(command, input=given, capture_output=True, timeout=30)


sandbox = Sandbox(PROGRAM)
try:
    made = {state: sandbox.ask("sessions", {"state": state})["sessionId"] for state in ("verified", "unknown", "expired")}
    for client, program in (("result.py", sys.executable), ("result.mjs", shutil.which("node") or "node")):
        lines = len(pathlib.Path(CLIENTS, client).read_text().splitlines())
        if lines >= 40:
            failures.append(f"{client} has {lines} lines")
        for session, secret, outcome, answer in (
                (made["verified"], SECRET.hex(), None, "verified"),
                (made["unknown"], SECRET.hex(), None, UNKNOWN),
                (made["expired"], SECRET.hex(), None, 'refused: "session_id": too old'),
                ("a/b\u00fc", SECRET.hex(), None, UNKNOWN),  # a slash, and what is no ASCII
                (made["verified"], SECRET.hex().replace("8", "9"), None, ".*(does not decrypt|no JSON object).*"),
                (made["verified"], SECRET.hex(), "noSessionId", "not verified"),
                (made["verified"], SECRET.hex(), "noResult", "not verified")):
            sandbox.ask("outcomes", {"result": outcome})
            done = run(program, f"{CLIENTS}/{client}", f"http://127.0.0.1:{sandbox.port}", "parloquin-demo", secret, session)
            said = (done.stdout + done.stderr).decode().strip()
            if not re.fullmatch(answer, said, re.DOTALL) or done.returncode != ("verified" not in answer):
                failures.append(f"{client}, {session}, {outcome}: {said} ({done.returncode}) instead of {answer}")

    vectors = json.loads(pathlib.Path(VECTORS).read_text())
    key = example.SIGNING_KEY.hex()
    for vector in vectors["requests"]:
        plain, body = vector["parameters"].encode(), vector["body"]["data"]
        text = f"{vector['timestamp']}-{vector['parameters']}".replace("\\/", "/")
        mac = base64.b64decode(vector["signature"])
        for what, got, wanted in (
                ("signed text", text, vector["signedText"]),
                ("signature", example.hmac.new(example.SIGNING_KEY, text.encode(), "sha256").digest(), mac),
                ("body", example.encrypt(plain, bytes.fromhex(vectors["secret"])), body),
                # Against another implementation of both.
                ("openssl's signature", run("openssl", "dgst", "-sha256", "-mac", "HMAC", "-macopt", f"hexkey:{key}", "-binary",
                                            given=text.encode()).stdout, mac),
                ("openssl's plain text", run("openssl", "enc", "-d", "-aes-256-ecb", "-K", vectors["secret"],
                                             given=base64.b64decode(body)).stdout, plain)):
            if got != wanted:
                failures.append(f"{what} of {text}: {got} instead of {wanted}")
finally:
    sandbox.close()

print("\n".join(failures) or "all well")
sys.exit(bool(failures))
