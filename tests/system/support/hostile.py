"""A server that answers with the bytes it is told to, whatever they are."""
import socket
import threading


class Speaker:
    """Answers every request with the pieces that `answers` has for its path, then closes; a piece
    may be a callable that makes more of them."""

    def __init__(self):
        self.answers = {}
        self.heads = []
        self._listener = socket.create_server(("127.0.0.1", 0))
        self.port = self._listener.getsockname()[1]
        threading.Thread(target=self._accept, daemon=True).start()

    def close(self):
        self._listener.shutdown(socket.SHUT_RDWR)
        self._listener.close()

    def url(self, path):
        return f"http://127.0.0.1:{self.port}{path}"

    def _accept(self):
        while True:
            try:
                peer, _ = self._listener.accept()
            except OSError:
                return
            threading.Thread(target=self._speak, args=(peer,), daemon=True).start()

    def _speak(self, peer):
        with peer:
            head = b""
            while b"\r\n\r\n" not in head:
                more = peer.recv(65536)
                if not more:
                    return
                head += more
            self.heads.append(head.decode("latin-1"))
            try:
                for piece in self.answers[head.split()[1].decode()]():
                    peer.sendall(piece)
            except OSError:
                pass
