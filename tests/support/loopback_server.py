#!/usr/bin/env python3
"""A web server on this machine that behaves badly on request.

  loopback_server.py --root FOLDER [--certificate FILE --key FILE]

Prints "port N". Serves the file at the path of the request below the folder, or else the one of the same name
directly in it. Each line of standard input, "behave NAME", says how from then on every request is answered (a number:
with that status), and is answered by "ok NAME"; the end of standard input ends the server. The log of requests goes to
standard error.
"""
import argparse
import http.server
import os
import socket
import ssl
import struct
import sys
import threading
import time
import urllib.parse

behaviour = "well"
ending = threading.Event()


class Handler(http.server.BaseHTTPRequestHandler):
    protocol_version = "HTTP/1.1"
    root = "."

    def do_GET(self):
        try:
            name = behaviour
            if self.path.startswith("/moved/"):
                self.path = self.path[len("/moved"):]
                name = "well"
            if name.isdigit():
                self.status(int(name))
            else:
                getattr(self, "behave_" + name)()
        except (BrokenPipeError, ConnectionResetError, ssl.SSLError):
            self.close_connection = True

    def content(self):
        path = urllib.parse.unquote(urllib.parse.urlsplit(self.path).path)
        for name in (path.lstrip("/"), os.path.basename(path)):
            file = os.path.join(self.root, name)
            if ".." not in name and os.path.isfile(file):
                with open(file, "rb") as stream:
                    return stream.read()
        return None

    def start(self, length, status=200, **headers):
        self.send_response(status)
        if length is not None:
            self.send_header("Content-Length", str(length))
        for name, value in headers.items():
            self.send_header(name.replace("_", "-"), value)
        self.end_headers()

    def behave_well(self):
        content = self.content()
        if content is None:
            return self.status(404)
        self.start(len(content))
        self.wfile.write(content)

    def status(self, status):
        if status in (204, 304):
            return self.start(None, status)
        self.start(5, status)
        self.wfile.write(b"words")

    def behave_headers(self):
        """The body is what was asked with."""
        body = "".join(f"{name}: {value}\n" for name, value in self.headers.items()).encode()
        self.start(len(body))
        self.wfile.write(body)

    def behave_early(self):
        self.wfile.write(b"HTTP/1.1 100 Continue\r\n\r\n")
        self.behave_well()

    def behave_cut404(self):
        self.start(1000, 404, Connection="close")
        self.wfile.write(b"words")
        self.close_connection = True

    def behave_loop(self):
        self.start(0, 302, Location=self.path)

    def behave_redirect(self):
        self.start(9, 302, Location="/moved" + self.path)
        self.wfile.write(b"elsewhere")

    def behave_elsewhere(self):
        self.start(0, 302, Location="http://example.invalid/file")

    def behave_reset(self):
        content = self.content()
        self.start(len(content))
        self.wfile.write(content[:len(content) // 2])
        self.wfile.flush()
        time.sleep(0.2)
        self.connection.setsockopt(socket.SOL_SOCKET, socket.SO_LINGER, struct.pack("ii", 1, 0))
        self.connection.close()
        self.close_connection = True

    def behave_short(self):
        content = self.content()
        self.start(len(content) + 1000, Connection="close")
        self.wfile.write(content)
        self.close_connection = True

    def behave_chunks(self):
        self.chunks(whole=True)

    def behave_cutchunks(self):
        self.chunks(whole=False)

    def chunks(self, whole):
        content = self.content()
        self.start(None, Transfer_Encoding="chunked", Connection="close")
        for at in range(0, len(content), 1000):
            piece = content[at:at + 1000]
            self.wfile.write(b"%x\r\n%s\r\n" % (len(piece), piece))
        if whole:
            self.wfile.write(b"0\r\n\r\n")
        self.close_connection = True

    def behave_nolength(self):
        self.protocol_version = "HTTP/1.0"
        self.start(None, Connection="close")
        self.wfile.write(self.content())
        self.close_connection = True

    def behave_stall(self):
        content = self.content()
        self.start(len(content))
        self.wfile.write(content[:len(content) // 2])
        self.wfile.flush()
        ending.wait(60)
        self.close_connection = True

    def behave_silent(self):
        ending.wait(60)
        self.close_connection = True

    def behave_slow(self):
        content = self.content()
        self.start(len(content))
        step = max(1, len(content) // 20)
        for at in range(0, len(content), step):
            self.wfile.write(content[at:at + step])
            self.wfile.flush()
            time.sleep(0.05)

    def behave_held(self):
        """The first half bit by bit, and the second as soon as the server behaves in another way."""
        content = self.content()
        self.start(len(content))
        half = len(content) // 2
        step = max(1, half // 10)
        for at in range(0, half, step):
            self.wfile.write(content[at:min(at + step, half)])
            self.wfile.flush()
            time.sleep(0.05)
        while behaviour == "held" and not ending.wait(0.05):
            continue
        self.wfile.write(content[half:])

    def behave_nohttp(self):
        self.wfile.write(b"220 mail server ready\r\n\r\n")
        self.close_connection = True


class Server(http.server.ThreadingHTTPServer):
    daemon_threads = True

    def handle_error(self, request, client_address):
        print("request ended:", sys.exc_info()[1], file=sys.stderr)


def main():
    global behaviour
    parser = argparse.ArgumentParser()
    parser.add_argument("--root", required=True)
    parser.add_argument("--certificate")
    parser.add_argument("--key")
    options = parser.parse_args()
    Handler.root = options.root
    server = Server(("127.0.0.1", 0), Handler)
    if options.certificate:
        context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        context.load_cert_chain(options.certificate, options.key)
        server.socket = context.wrap_socket(server.socket, server_side=True)
    threading.Thread(target=server.serve_forever, daemon=True).start()
    print("port", server.server_address[1], flush=True)
    for line in sys.stdin:
        word, _, name = line.strip().partition(" ")
        if word == "behave" and (name.isdigit() or hasattr(Handler, "behave_" + name)):
            behaviour = name
            print("ok", name, flush=True)
        else:
            print("error", line.strip(), flush=True)
    ending.set()


if __name__ == "__main__":
    main()
