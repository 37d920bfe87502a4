"""Who knows NTLM passwords: as the domain controller that a web server asks over LDAP and, run as
a program, as the helper that squid asks."""
import base64
import hmac
import os
import socketserver
import struct
import sys
import threading

DOMAIN, NAME = "WORK", "müller"
SIGNATURE = b"NTLMSSP\0"


def md4(message):
    """RFC 1320, which hashlib has not everywhere."""
    mask = 0xffffffff
    message += b"\x80" + bytes(-(len(message) + 9) % 64) + struct.pack("<Q", len(message) * 8)
    rounds = [
        (lambda x, y, z: (x & y) | (~x & z), 0, (3, 7, 11, 19), range(16)),
        (lambda x, y, z: (x & y) | (x & z) | (y & z), 0x5a827999, (3, 5, 9, 13),
         [row + 4 * column for row in range(4) for column in range(4)]),
        (lambda x, y, z: x ^ y ^ z, 0x6ed9eba1, (3, 9, 11, 15),
         [0, 8, 4, 12, 2, 10, 6, 14, 1, 9, 5, 13, 3, 11, 7, 15]),
    ]
    state = [0x67452301, 0xefcdab89, 0x98badcfe, 0x10325476]
    for start in range(0, len(message), 64):
        words = struct.unpack("<16I", message[start:start + 64])
        a, b, c, d = state
        for mix, constant, shifts, order in rounds:
            for step, index in enumerate(order):
                total = (a + mix(b, c, d) + words[index] + constant) & mask
                shift = shifts[step % 4]
                a, b, c, d = d, (total << shift | total >> (32 - shift)) & mask, b, c
        state = [(old + new) & mask for old, new in zip(state, (a, b, c, d))]
    return struct.pack("<4I", *state)


class Gatekeeper:
    """One handshake: what is said to who wants to come in, and whether he may (MS-NLMP, 2.2.1 and
    3.3.2)."""

    def __init__(self, password):
        self._password = password
        self._nonce = os.urandom(8)

    def challenge(self):
        flags = 0x1 | 0x4 | 0x200 | 0x8000 | 0x10000 | 0x80000 | 0x800000
        domain = DOMAIN.encode("utf-16-le")
        target = struct.pack("<HH", 2, len(domain)) + domain + bytes(4)
        head = 48
        return (SIGNATURE + struct.pack("<IHHII", 2, len(domain), len(domain), head, flags) +
                self._nonce + bytes(8) +
                struct.pack("<HHI", len(target), len(target), head + len(domain)) + domain + target)

    def lets_in(self, message):
        def field(place):
            size, _, start = struct.unpack_from("<HHI", message, place)
            return message[start:start + size]

        answer, domain, name = field(20), field(28), field(36)
        person = (NAME.upper() + DOMAIN).encode("utf-16-le")
        key = hmac.digest(md4(self._password.encode("utf-16-le")), person, "md5")
        expected = hmac.digest(key, self._nonce + answer[16:], "md5")
        said = (domain.decode("utf-16-le").upper(), name.decode("utf-16-le").upper())
        return said == (DOMAIN, NAME.upper()) and hmac.compare_digest(expected, answer[:16])


def element(kind, *parts):
    content = b"".join(parts)
    size = len(content)
    length = bytes([size]) if size < 128 else b"\x82" + struct.pack(">H", size)
    return bytes([kind]) + length + content


class Controller(socketserver.ThreadingTCPServer):
    """Takes NTLM for a password when somebody binds over LDAP (RFC 4511, 4.2)."""

    allow_reuse_address = daemon_threads = True

    def __init__(self, password):
        self.password = password
        super().__init__(("127.0.0.1", 0), Binding)
        self.port = self.server_address[1]
        threading.Thread(target=self.serve_forever, daemon=True).start()

    def close(self):
        self.shutdown()
        self.server_close()


class Binding(socketserver.BaseRequestHandler):
    success, goes_on, wrong = 0, 14, 49

    def handle(self):
        keeper = Gatekeeper(self.server.password)
        number = 0
        # The two requests are small and wait for each other, so each comes in one piece.
        while request := self.request.recv(65536):
            number += 1
            token = request[request.index(SIGNATURE):]
            if token[8] == 1:
                self.answer(number, self.goes_on, element(0x87, keeper.challenge()))
            else:
                self.answer(number, self.success if keeper.lets_in(token) else self.wrong)

    def answer(self, number, code, more=b""):
        self.request.sendall(element(0x30, element(0x02, bytes([number])), element(
            0x61, element(0x0a, bytes([code])), element(0x04), element(0x04), more)))


def help_squid(password):
    keeper = None
    for line in sys.stdin:
        kind, _, token = line.strip().partition(" ")
        if kind == "YR":
            keeper = Gatekeeper(password)
            print("TT", base64.b64encode(keeper.challenge()).decode(), flush=True)
        else:
            known = keeper and keeper.lets_in(base64.b64decode(token))
            print(f"AF {NAME}" if known else "NA wrong", flush=True)


if __name__ == "__main__":
    with open(sys.argv[1], encoding="utf-8") as file:
        help_squid(file.read())
