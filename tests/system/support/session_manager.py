"""session_manager.py: a session that programs join by X11 session management. Prints how it is
reached (SESSION_MANAGER), "joined" for a program that has come and "saved" when one has saved
itself; obeys "log out" and then "cancel" or "end" on its standard input."""
import ctypes
import os
import select
import sys
from ctypes import CFUNCTYPE, POINTER, byref, c_char_p, c_int, c_ulong, c_void_p

ICE, SM = ctypes.CDLL("libICE.so.6"), ctypes.CDLL("libSM.so.6")
for function in (ICE.IceComposeNetworkIdList, ICE.IceAcceptConnection, SM.SmsGenerateClientID,
                 SM.SmsGetIceConnection):
    function.restype = c_void_p
LOCAL, BOTH = 1, 2
NO_INTERACTION, ANY_INTERACTION = 0, 2
ALL_CALLBACKS = (1 << 10) - 1


def on(*arguments, result=None):
    """A function of that kind for the library, which keeps it without holding it."""
    def made(function):
        KEPT.append(CFUNCTYPE(result, *arguments)(function))
        return KEPT[-1]
    return made


KEPT = []
CLIENTS = []


def say(text):
    print(text, flush=True)


@on(c_void_p, c_void_p, c_char_p, result=c_int)
def register_client(client, _data, _previous):
    SM.SmsRegisterClientReply(c_void_p(client), c_void_p(SM.SmsGenerateClientID(c_void_p(client))))
    SM.SmsSaveYourself(c_void_p(client), LOCAL, 0, NO_INTERACTION, 0)
    return 1


@on(c_void_p, c_void_p, c_int)
def save_yourself_done(client, _data, _success):
    SM.SmsSaveComplete(c_void_p(client))
    if client in CLIENTS:
        say("saved")
    else:
        # Whoever comes saves itself once to begin with.
        CLIENTS.append(client)
        say("joined")


@on(c_void_p, c_void_p, c_int, c_int)
def allow_interaction(client, _data, _type, _cancels=0):
    SM.SmsInteract(c_void_p(client))


@on(c_void_p, c_void_p, c_int, c_void_p)
def close_connection(client, _data, _count, _reasons):
    if client in CLIENTS:
        CLIENTS.remove(client)
    connection = SM.SmsGetIceConnection(c_void_p(client))
    SM.SmsCleanUp(c_void_p(client))
    ICE.IceSetShutdownNegotiation(c_void_p(connection), 0)
    ICE.IceCloseConnection(c_void_p(connection))


@on()
def ignore():
    pass


@on(c_void_p, c_void_p, POINTER(c_ulong), POINTER(c_void_p * 20), c_void_p, result=c_int)
def new_client(_client, _data, mask, callbacks, _reason):
    """Each callback stands before the data that it is given."""
    functions = (register_client, allow_interaction, ignore, ignore, ignore, save_yourself_done,
                 close_connection, ignore, ignore, ignore)
    for index, function in enumerate(functions):
        callbacks.contents[2 * index] = ctypes.cast(function, c_void_p).value
    mask[0] = ALL_CALLBACKS
    return 1


@on(c_char_p, result=c_int)
def allow(_host):
    return 1


@on(c_void_p)
def forget(_connection):
    """A program that is gone is none of our errors."""


def obey(command):
    for client in CLIENTS:
        if command == "log out":
            SM.SmsSaveYourself(c_void_p(client), BOTH, 1, ANY_INTERACTION, 0)
        elif command == "cancel":
            SM.SmsShutdownCancelled(c_void_p(client))
        elif command == "end":
            SM.SmsDie(c_void_p(client))


def accept(listener, connections):
    status = c_int()
    connection = ICE.IceAcceptConnection(c_void_p(listener), byref(status))
    if connection:
        connections[ICE.IceConnectionNumber(c_void_p(connection))] = connection


def main():
    error = ctypes.create_string_buffer(256)
    ICE._IceTransNoListen(b"tcp")
    SM.SmsInitialize(b"Test", b"1", new_client, None, allow, len(error), error)
    ICE.IceSetIOErrorHandler(forget)
    count, listeners = c_int(), POINTER(c_void_p)()
    if not ICE.IceListenForConnections(byref(count), byref(listeners), len(error), error):
        sys.exit(error.value.decode())
    for index in range(count.value):
        ICE.IceSetHostBasedAuthProc(c_void_p(listeners[index]), allow)
    doors = {ICE.IceGetListenConnectionNumber(c_void_p(listeners[index])): listeners[index]
             for index in range(count.value)}
    connections = {}
    say(ctypes.string_at(ICE.IceComposeNetworkIdList(count, listeners)).decode())
    while True:
        for descriptor in select.select([0, *doors, *connections], [], [])[0]:
            if descriptor == 0:
                # Unbuffered, as it is waited for by its descriptor.
                commands = os.read(0, 1000).decode()
                if not commands:
                    ICE.IceFreeListenObjs(count, listeners)
                    return
                for command in commands.splitlines():
                    obey(command)
            elif descriptor in doors:
                accept(doors[descriptor], connections)
            elif ICE.IceProcessMessages(c_void_p(connections[descriptor]), None, None):
                del connections[descriptor]


main()
