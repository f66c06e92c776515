#!/usr/bin/python3
"""Asks the service whether a session is verified: result.py URL CLIENT_KEY SECRET SESSION_ID"""
import base64, hashlib, hmac, json, sys, time, urllib.error, urllib.request
from cryptography.hazmat.primitives import padding
from cryptography.hazmat.primitives.ciphers import Cipher, algorithms, modes

SIGNING_KEY = b"GPzEyoL8,?Es,]|$aJd#wy$XxQPpl+H)8ACyjkz,4;)jmBQlm.7k)nI4]+pS(hZ/"

def encrypt(text, secret):
    padder, cipher = padding.PKCS7(128).padder(), Cipher(algorithms.AES(secret), modes.ECB()).encryptor()
    return base64.b64encode(cipher.update(padder.update(text) + padder.finalize())).decode()

def decrypt(text, secret):
    unpadder, cipher = padding.PKCS7(128).unpadder(), Cipher(algorithms.AES(secret), modes.ECB()).decryptor()
    return unpadder.update(cipher.update(base64.b64decode(text, validate=True))) + unpadder.finalize()

def is_verified(url, client_key, secret, session_id):
    stamp = f"{int(time.time())}000"
    plain = json.dumps({"session_id": session_id}, separators=(",", ":"), ensure_ascii=False)
    mac = hmac.new(SIGNING_KEY, f"{stamp}-{plain}".encode(), hashlib.sha256).digest()
    headers = {"Content-Type": "application/json; charset=utf-8", "User-Agent": "iOS", "X-TRZ-Os": "ios 1",
               "X-TRZ-Sdk-Version": "1.0", "X-TRZ-Client-Key": client_key, "X-TRZ-Encrypted": "1",
               "X-TRZ-Req-Timestamp": stamp, "X-TRZ-Req-Signature": base64.b64encode(mac).decode()}
    body = json.dumps({"data": encrypt(plain.replace("/", "\\/").encode(), secret)}).encode()
    try:
        answer = urllib.request.urlopen(urllib.request.Request(f"{url}/v1.0/result", body, headers), timeout=10)
    except urllib.error.HTTPError as error:  # a refusal has a body as well
        answer = error
    envelope = json.load(answer)
    if answer.headers.get("X-TRZ-Encrypted") == "1":
        envelope = json.loads(decrypt(envelope["data"], secret))
    result = envelope.get("result") or {}
    if envelope["meta"]["httpStatusCode"] in (200, 201):
        return result.get("sessionId") == session_id and result.get("validationStatus") is True
    raise SystemExit(f"refused: {envelope['meta'].get('errorMessage')}")

if __name__ == "__main__":
    print("verified" if is_verified(sys.argv[1], sys.argv[2], bytes.fromhex(sys.argv[3]), sys.argv[4]) else "not verified")
