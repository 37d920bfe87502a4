"""A server that answers with the bytes it is told to, whatever they are."""
import shutil
import socket
import ssl
import tempfile
import threading

from .servers import Authority


class Speaker:
    """Answers every request with the pieces that `answers` has for its path, then closes, unless it
    `keeps` connections; a piece may be a callable that makes more of them."""

    scheme, host = "http", "127.0.0.1"

    def __init__(self):
        self.answers = {}
        self.keeps = False
        self.connections = 0
        self.heads = []
        self._listener = socket.create_server(("127.0.0.1", 0))
        self.port = self._listener.getsockname()[1]
        threading.Thread(target=self._accept, daemon=True).start()

    def close(self):
        self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()

    def url(self, path):
        return f"{self.scheme}://{self.host}:{self.port}{path}"

    def _accept(self):
        while True:
            try:
                peer, _ = self._listener.accept()
            except OSError:
                return
            self.connections += 1
            threading.Thread(target=self._serve, args=(peer,), daemon=True).start()

    def _serve(self, peer):
        try:
            with self._secured(peer) as peer:
                while self._speak(peer) and self.keeps:
                    pass
        except OSError:
            pass

    def _secured(self, peer):
        return peer

    def _speak(self, peer):
        head = b""
        while b"\r\n\r\n" not in head:
            more = peer.recv(65536)
            if not more:
                return False
            head += more
        self.heads.append(head.decode("latin-1"))
        for piece in self.answers[head.split()[1].decode()]():
            peer.sendall(piece) if isinstance(piece, bytes) else piece(peer)
        return True


class TlsSpeaker(Speaker):
    """The same over TLS, each piece a record of its own. It ends without a notice, unless a piece
    is `end_notice`."""

    scheme, host = "https", "localhost"

    def __init__(self):
        self._folder = tempfile.mkdtemp(prefix="orlop-server-")
        self.authority = Authority(self._folder)
        self._context = ssl.SSLContext(ssl.PROTOCOL_TLS_SERVER)
        self._context.load_cert_chain(self.authority.certificate, self.authority.key)
        super().__init__()

    def close(self):
        super().close()
        shutil.rmtree(self._folder)

    def _secured(self, peer):
        return self._context.wrap_socket(peer, server_side=True)

    @staticmethod
    def end_notice(peer):
        peer.unwrap()
