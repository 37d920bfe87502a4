// A web server that lets in whom its domain controller knows, by express-ntlm. Arguments: the
// folder of packages, the port, the folder of content, the log and the controller's port. Each
// request is a line in the log: path, status, kind of authorization, number of its connection.
//
// /half/FILE closes the connection in place of the challenge, /late/FILE in place of the last
// answer, /forbidden/FILE says 403 to a wrong password where others say 401.
'use strict';

const fs = require('fs');
const http = require('http');
const path = require('path');

const [packages, port, content, log, controller] = process.argv.slice(2);
const ntlm = require(path.join(packages, 'express-ntlm'));

let connections = 0;

function kindOf(header) {
    const [scheme, token] = (header || '-').split(' ');
    return token ? scheme + Buffer.from(token, 'base64').readUInt8(8) : scheme;
}

function refuse(request, response) {
    response.writeHead(401, {'WWW-Authenticate': 'NTLM', 'Content-Length': 0}).end();
}

function forbid(request, response) {
    if (request.url.startsWith('/forbidden/'))
        response.writeHead(403, {'Content-Length': 0}).end();
    else
        refuse(request, response);
}

function serve(request, response) {
    fs.readFile(path.join(content, path.basename(request.url)), (error, data) => {
        if (error)
            response.writeHead(404, {'Content-Length': 0}).end();
        else
            response.writeHead(200, {'Content-Length': data.length}).end(data);
    });
}

const guard = ntlm({
    domain: 'WORK',
    domaincontroller: `ldap://127.0.0.1:${controller}/dc=work`,
    unauthorized: refuse,
    forbidden: forbid,
    badrequest: (request, response) => response.writeHead(400).end(),
    internalservererror: (request, response) => response.writeHead(500).end()
});

const server = http.createServer((request, response) => {
    const kind = kindOf(request.headers.authorization);
    // The little of Express that the guard uses.
    response.locals = {};
    request.get = name => request.headers[name];
    response.on('close', () => fs.appendFileSync(
        log, [request.url, response.writableFinished ? response.statusCode : 'closed', kind,
              request.socket.number].join('|') + '\n'));
    const closesAt = {half: 'NTLM1', late: 'NTLM3'}[request.url.split('/')[1]];
    if (closesAt === kind)
        request.socket.destroy();
    else
        guard(request, response, () => serve(request, response));
});
server.on('connection', socket => { socket.number = ++connections; });
// A promise that ends is not taken as one.
server.keepAliveTimeout = 0;
server.listen(Number(port), '127.0.0.1');
