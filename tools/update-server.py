#!/usr/bin/env python3
"""A stand-in for the update server, for the tests and for trying the program out. Serves on 127.0.0.1 only.

    tools/update-server.py [--port N] [--records FOLDER] [--record CODE=JSON]... [--downloads FOLDER]
                           [--behaviour CODE=NAME]... [--control FOLDER] [--tls FILE]

Prints "READY <port>" when it can be asked, then every request line as it came. With --control it writes these lines to
the file "lines" in that folder, and ends when there is a file "stop", leaving one "ended", or when the folder has gone.

    /api/software-product-versions/latest-byswcode?langCode=CN&swSnCode=CODE
        the record of a product code: that of --record, else the content of FOLDER/CODE.json, else 404
    /downloads/NAME
        a file of the downloads' folder

In front of either stands, if wanted, /behave/NAME, which makes the answer go wrong; --behaviour does so for every query
of one product code. "{port}" in a record is replaced by the server's port. The names:

    no-answer        accepts the request and stays silent
    slow             one byte per second
    stall            half of the answer, then silence
    much-stall       20 KB of rubbish, not announced, then silence
    short            announces one byte more than it sends
    404, 500         the HTTP error, with a record as its page
    invalid          no JSON
    list             JSON that is no object
    types            an object whose values are no texts
    empty            an object without keys
    nothing          an answer of no bytes
    large            a valid record of 2 MiB
    rubbish          200 MB of rubbish, announced
    rubbish-chunked  200 MB of rubbish, not announced
    redirect         to the same place without the behaviour
    redirect-file    to a file of this computer
    redirect-ftp     to an ftp address
    redirect-self    to itself, without end
    redirect-http-PORT, redirect-https-PORT
                     to the same place at another port of 127.0.0.1
    packed           the answer packed with gzip, whatever was asked for
    packed-bomb      1 MB that unpack to 200 MB
    many-headers     100 KiB of headers in front of the answer
    many-fields      30,000 headers in front of the answer
    endless-header   a header without end
    endless-fields   headers without end
    endless-status   interim answers without end
    cut              the first half of the answer, as if that were all
    spoiled          one character at a third of the answer is another one: in a signature file, of the first signature
    cr-lf            the answer with the ends of lines of Windows
    as-FILE          another file of the downloads' folder
    sig-NAME         the behaviour NAME for signatures (files ".minisig") alone; other files are as they are
    pack-NAME        the behaviour NAME for files without their signatures

With --tls it speaks https, with the key and the certificate in a file.
"""
import argparse
import gzip
import http.server
import itertools
import os
import pathlib
import ssl
import threading
import time
import urllib.parse

QUERY = "/api/software-product-versions/latest-byswcode"
DOWNLOADS = "/downloads/"
RUBBISH = 200 * 1000 * 1000


class Handler(http.server.BaseHTTPRequestHandler):
    """Answers one connection."""

    protocol_version = "HTTP/1.1"

    def do_GET(self):
        self.server.tell(self.requestline)
        address = urllib.parse.urlsplit(self.path)
        path, behaviour = address.path, ""
        if path.startswith("/behave/"):
            behaviour, _, rest = path[len("/behave/"):].partition("/")
            path = "/" + rest
        of, _, name = behaviour.partition("-")
        if of in ("sig", "pack"):
            behaviour = name if (of == "sig") == path.endswith(".minisig") else ""
        code = dict(urllib.parse.parse_qsl(address.query)).get("swSnCode", "")
        if path == QUERY:
            behaviour = behaviour or self.server.behaviours.get(code, "")
            body = self.server.record(code)
        else:
            body = self.server.download(path)
        if behaviour.startswith("as-"):
            body, behaviour = self.server.download(DOWNLOADS + behaviour[len("as-"):]), ""
        self.close_connection = True
        try:
            self.behave(behaviour, body, path + ("?" + address.query if address.query else ""))
        except (ConnectionError, TimeoutError):
            pass  # the client has gone

    def behave(self, behaviour, body, plain):
        if behaviour in ("404", "500"):
            self.send(int(behaviour), body or b"{}")
        elif behaviour in BODIES:
            self.send(200, BODIES[behaviour]())
        elif behaviour in CHANGES and body is not None:
            self.send(200, CHANGES[behaviour](body))
        elif behaviour in TARGETS:
            self.redirect(TARGETS[behaviour])
        elif behaviour == "redirect":
            self.redirect(plain)
        elif behaviour.startswith("redirect-http"):
            scheme, port = behaviour[len("redirect-"):].split("-")
            self.redirect(f"{scheme}://127.0.0.1:{port}{plain}")
        elif behaviour == "redirect-self":
            self.redirect(self.path)
        elif behaviour == "no-answer":
            self.wait_for_client()
        elif behaviour in FLOODS:
            for piece in FLOODS[behaviour]():
                self.wfile.write(piece)
                time.sleep(0.02)  # still more than the toolkit reads, and yet not much that is under way at the end
        elif behaviour in PACKED:
            packed = gzip.compress(PACKED[behaviour](body), 1)
            self.send(200, packed, [("Content-Encoding", "gzip")])
        elif behaviour in HEADERS:
            self.send(200, body, HEADERS[behaviour])
        elif behaviour == "much-stall":
            self.send_response(200)
            self.send_header("Connection", "close")
            self.end_headers()
            self.wfile.write(b"\xa5" * 20000)
            self.wait_for_client()
        elif behaviour == "rubbish":
            self.rubbish(is_chunked=False)
        elif behaviour == "rubbish-chunked":
            self.rubbish(is_chunked=True)
        elif body is None or behaviour not in ("", "slow", "stall", "short"):
            self.send(404, b"")
        elif behaviour == "slow":
            self.slow(body)
        elif behaviour == "stall":
            self.head(200, len(body))
            self.wfile.write(body[: len(body) // 2])
            self.wait_for_client()
        elif behaviour == "short":
            self.head(200, len(body) + 1)
            self.wfile.write(body)
        else:
            self.send(200, body)

    def head(self, status, length, headers=()):
        self.send_response(status)
        for name, value in headers:
            self.send_header(name, value)
        self.send_header("Content-Length", str(length))
        self.send_header("Connection", "close")
        self.end_headers()

    def send(self, status, body, headers=()):
        self.head(status, len(body), headers)
        self.wfile.write(body)

    def redirect(self, target):
        self.send_response(302)
        self.send_header("Location", target)
        self.send_header("Content-Length", "0")
        self.send_header("Connection", "close")
        self.end_headers()

    def slow(self, body):
        self.head(200, len(body))
        for index in range(len(body)):
            self.wfile.write(body[index:index + 1])
            time.sleep(1)

    def rubbish(self, is_chunked):
        self.send_response(200)
        if is_chunked:
            self.send_header("Transfer-Encoding", "chunked")
        else:
            self.send_header("Content-Length", str(RUBBISH))
        self.send_header("Connection", "close")
        self.end_headers()
        block = b"\xa5" * 100000
        for _ in range(RUBBISH // len(block)):
            self.wfile.write(b"%x\r\n%s\r\n" % (len(block), block) if is_chunked else block)
        if is_chunked:
            self.wfile.write(b"0\r\n\r\n")

    def wait_for_client(self):
        while self.connection.recv(4096):
            pass

    def log_message(self, *_):
        """The request lines are printed as they come; nothing else is."""


BODIES = {
    "invalid": lambda: b'{"versionNo": "9.9.9"',
    "list": lambda: b'[{"versionNo": "9.9.9"}]',
    "types": lambda: b'{"name": 1, "summary": null, "versionNo": ["9.9.9"], "url": {"a": "b"}}',
    "empty": lambda: b"{}",
    "nothing": lambda: b"",
    "large": lambda: b'{"versionNo": "9.9.9", "summary": "%s"}' % (b"a" * 2 * 1024 * 1024),
}
CHANGES = {
    "cut": lambda body: body[:len(body) // 2],
    "spoiled": lambda body: replaced(body, len(body) // 3),
    "cr-lf": lambda body: body.replace(b"\n", b"\r\n"),
}
PACKED = {"packed": lambda body: body, "packed-bomb": lambda _: b" " * 200 * 1000 * 1000}
HEADERS = {
    "many-headers": [(f"X-{index}", "a" * 5120) for index in range(20)],
    "many-fields": [(f"X-{index}", "a") for index in range(30000)],
}
BLOCK = b"a" * 65536
FLOODS = {
    "endless-header": lambda: itertools.chain([b"HTTP/1.1 200 OK\r\nX-A: "], itertools.repeat(BLOCK)),
    "endless-fields": lambda: itertools.chain([b"HTTP/1.1 200 OK\r\n"], itertools.repeat(b"X-A: a\r\n" * 8192)),
    "endless-status": lambda: itertools.repeat(b"HTTP/1.1 100 Continue\r\n\r\n" * 2048),
}
TARGETS = {"redirect-file": "file:///etc/hostname", "redirect-ftp": "ftp://127.0.0.1/record.json"}


class Server(http.server.ThreadingHTTPServer):
    """Serves the records and the downloads named on the command line."""

    daemon_threads = True

    def __init__(self, arguments):
        super().__init__(("127.0.0.1", arguments.port), Handler)
        self.records = dict(record.split("=", 1) for record in arguments.record)
        self.behaviours = dict(behaviour.split("=", 1) for behaviour in arguments.behaviour)
        self.record_folder = arguments.records
        self.download_folder = arguments.downloads
        self.control = pathlib.Path(arguments.control) if arguments.control else None
        self.telling = threading.Lock()
        self.tls = None
        if arguments.tls is not None:
            self.tls = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
            self.tls.load_cert_chain(arguments.tls)

    def finish_request(self, request, client_address):
        """On the connection's own thread."""
        if self.tls is not None:
            request = self.tls.wrap_socket(request, server_side=True)
        super().finish_request(request, client_address)

    def tell(self, line):
        """Before this returns, whoever reads the lines can have this one."""
        with self.telling:
            if self.control is None:
                print(line, flush=True)
            else:
                with open(self.control / "lines", "ab") as lines:
                    lines.write(line.encode() + b"\n")

    def end_with_control(self):
        """When it is told to, when the folder has gone, or when it has been forgotten."""
        until = time.monotonic() + 1200
        while self.control.exists() and not (self.control / "stop").exists() and time.monotonic() < until:
            time.sleep(0.02)
        self.socket.close()
        if self.control.exists():
            (self.control / "ended").touch()
        os._exit(0)

    def record(self, code):
        text = self.records.get(code)
        if text is None:
            content = stored(self.record_folder, code + ".json")
            if content is None:
                return None
            text = content.decode()
        return text.replace("{port}", str(self.server_port)).encode()

    def download(self, path):
        if not path.startswith(DOWNLOADS):
            return None
        return stored(self.download_folder, urllib.parse.unquote(path[len(DOWNLOADS):]))

    def handle_error(self, request, client_address):
        """A client that goes away is part of the tests."""


def replaced(body, index):
    """With a letter in the place of another one."""
    return body[:index] + (b"B" if body[index:index + 1] == b"A" else b"A") + body[index + 1:]


def stored(folder, name):
    """The content of a file in the folder itself; None when there is none."""
    if folder is None or pathlib.PurePath(name).name != name:
        return None
    path = pathlib.Path(folder, name)
    return path.read_bytes() if path.is_file() else None


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--port", type=int, default=0, help="0: any that is free")
    parser.add_argument("--records")
    parser.add_argument("--record", action="append", default=[])
    parser.add_argument("--downloads")
    parser.add_argument("--behaviour", action="append", default=[])
    parser.add_argument("--control", metavar="FOLDER", help="write to the file lines there, end with the file stop")
    parser.add_argument("--tls", metavar="FILE", help="speak https, with this key and certificate")
    server = Server(parser.parse_args())
    if server.control is not None:
        threading.Thread(target=server.end_with_control, daemon=True).start()
    server.tell(f"READY {server.server_port}")
    try:
        server.serve_forever()
    except KeyboardInterrupt:
        pass


if __name__ == "__main__":
    main()
