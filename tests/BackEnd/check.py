#!/usr/bin/python3
"""Runs the back ends of docs/backend.md against a sandbox, and holds its test vectors.

Usage: check.py SANDBOX FOLDER_OF_CLIENTS VECTORS
"""

import importlib.util
import json
import pathlib
import shutil
import subprocess
import sys

sys.path.append(str(pathlib.Path(__file__).parent.parent / "support"))
from sandbox import Sandbox  # noqa: E402

PROGRAM, CLIENTS, VECTORS = sys.argv[1:4]
SECRET = "8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e"
failures = []


def expect(right, what):
    if not right:
        failures.append(what)


sandbox = Sandbox(PROGRAM)
ask = sandbox.ask


def run(client, session, secret=SECRET):
    command = [shutil.which("node") or "node"] if client.endswith(".mjs") else [sys.executable]
    done = subprocess.run([*command, f"{CLIENTS}/{client}", f"http://127.0.0.1:{sandbox.port}", "parloquin-demo", secret, session],
                          capture_output=True, text=True, timeout=30)
    return (done.stdout + done.stderr).strip()


try:
    for client in ("result.py", "result.mjs"):
        lines = len(pathlib.Path(CLIENTS, client).read_text().splitlines())
        expect(lines < 40, f"{client} has {lines} lines")
        for state, answer in (("verified", "verified"), ("unknown", 'refused: "session_id": unknown'),
                              ("expired", 'refused: "session_id": too old')):
            said = run(client, ask("sessions", {"state": state})["sessionId"])
            expect(said == answer, f"{client}, {state}: {said}")
        said = run(client, "a/b\u00fc")  # a slash, and what is no ASCII
        expect(said == 'refused: "session_id": unknown', f"{client}, odd id: {said}")
        session = ask("sessions", {})["sessionId"]
        said = run(client, session, SECRET.replace("8", "9"))
        expect("does not decrypt" in said or "no JSON object" in said, f"{client}, wrong secret: {said}")
        for outcome in ("noSessionId", "noResult"):
            ask("outcomes", {"result": outcome})
            said = run(client, session)
            expect(said == "not verified", f"{client}, {outcome}: {said}")
        ask("outcomes", {"result": None})

    source = importlib.util.spec_from_file_location("result", f"{CLIENTS}/result.py")
    client = importlib.util.module_from_spec(source)
    source.loader.exec_module(client)
    vectors = json.loads(pathlib.Path(VECTORS).read_text())
    secret = bytes.fromhex(vectors["secret"])
    for vector in vectors["requests"]:
        text = f"{vector['timestamp']}-{vector['parameters']}".replace("\\/", "/")
        mac = client.hmac.new(client.SIGNING_KEY, text.encode(), "sha256").digest()
        expect(vector["signedText"] == text, f"signed text of {vector['parameters']}")
        expect(vector["signature"] == client.base64.b64encode(mac).decode(), f"signature of {text}")
        expect(vector["body"]["data"] == client.encrypt(vector["parameters"].encode(), secret), f"body of {text}")
        # Against another implementation of both.
        key = client.SIGNING_KEY.hex()
        other = subprocess.run(["openssl", "dgst", "-sha256", "-mac", "HMAC", "-macopt", f"hexkey:{key}", "-binary"],
                               input=text.encode(), capture_output=True, check=True).stdout
        expect(other == mac, f"openssl signs {text} otherwise")
        plain = subprocess.run(["openssl", "enc", "-d", "-aes-256-ecb", "-K", vectors["secret"]], check=True,
                               input=client.base64.b64decode(vector["body"]["data"]), capture_output=True).stdout
        expect(plain.decode() == vector["parameters"], f"openssl decrypts {text} otherwise")
finally:
    sandbox.close()

print("\n".join(failures) or "all well")
sys.exit(bool(failures))
