"""A running sandbox, and a client of the service that does everything right."""

import base64
import hashlib
import hmac
import json
import pathlib
import re
import subprocess
import sys
import threading
import time
import urllib.error
import urllib.request

# What a back end needs of them, which is held against openssl.
sys.path.append(str(pathlib.Path(__file__).parents[2] / "examples/backend"))
from result import SIGNING_KEY, decrypt, encrypt  # noqa: E402

SECRET = bytes.fromhex("8f2d6b7a41c05e93d7a8614f0be2395cc6710f4d92ab38e5570d1c64fa83b92e")


class Sandbox:
    def __init__(self, program, *options):
        self.process = subprocess.Popen(
            [program, "--port", "0", "--page", "0", *options],
            stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True)
        lines = self.process.stdout.readline() + self.process.stdout.readline()
        # A pipe that nobody reads fills, and then the service waits.
        self.reader = threading.Thread(target=self.process.stdout.read, daemon=True)
        self.reader.start()
        self.port, self.page = map(int, re.findall(r"127\.0\.0\.1:(\d+)", lines))

    def close(self):
        self.process.terminate()
        self.process.wait(timeout=20)
        self.reader.join()
        self.process.stdout.close()

    def ask(self, path, body=None):
        url = f"http://127.0.0.1:{self.page}/sandbox/{path}"
        data = None if body is None else json.dumps(body).encode()
        with urllib.request.urlopen(urllib.request.Request(url, data)) as answer:
            return json.load(answer)

    def call(self, name, parameters, signature=None, headers=()):
        return self.exchange(name, parameters, signature, headers)[3]

    def exchange(self, name, parameters, signature=None, headers=()):
        """Status, headers and body of the answer as they came, and what it says."""
        stamp = f"{int(time.time())}000"
        text = json.dumps(parameters, sort_keys=True, separators=(",", ":"), ensure_ascii=False)
        mac = hmac.new(SIGNING_KEY, f"{stamp}-{text}".encode(), hashlib.sha256).digest()
        all_headers = {
            "User-Agent": "iOS", "X-TRZ-Os": "ios 12", "X-TRZ-Sdk-Version": "1.0",
            "X-TRZ-Lang": "en", "X-TRZ-Client-Device-Id": "6F9619FF-8B86-D011-B42D-00C04FC964FF",
            "X-TRZ-Req-Timestamp": stamp, "X-TRZ-Encrypted": "1",
            "X-TRZ-Req-Signature": signature or base64.b64encode(mac).decode(),
            "X-TRZ-Client-Key": "parloquin-demo",
            "Content-Type": "application/json; charset=utf-8", **dict(headers)}
        body = json.dumps({"data": encrypt(text.replace("/", "\\/").encode(), SECRET)}).encode()
        request = urllib.request.Request(
            f"http://127.0.0.1:{self.port}/v1.0/{name}", body, all_headers)
        try:
            answer = urllib.request.urlopen(request)
        except urllib.error.HTTPError as error:
            answer = error
        body = json.load(answer)
        content = json.loads(decrypt(body["data"], SECRET)) if "data" in body else body
        return answer.status, dict(answer.headers), body, content
