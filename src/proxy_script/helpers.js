// The functions that every automatic configuration script may call. The program calls what this
// evaluates to with what only it can do, and makes the functions that come back global.
(function (system) {
    "use strict";

    const days = ["SUN", "MON", "TUE", "WED", "THU", "FRI", "SAT"];
    const months = ["JAN", "FEB", "MAR", "APR", "MAY", "JUN",
                    "JUL", "AUG", "SEP", "OCT", "NOV", "DEC"];

    function lower(text) {
        return String(text).toLowerCase();
    }

    function isPlainHostName(host) {
        return !/[.:]/.test(host);
    }

    function dnsDomainIs(host, domain) {
        return lower(host).endsWith(lower(domain));
    }

    function localHostOrDomainIs(host, fullName) {
        const name = lower(host);
        return name === lower(fullName) ||
            (isPlainHostName(name) && lower(fullName).startsWith(name + "."));
    }

    function dnsDomainLevels(host) {
        return String(host).split(".").length - 1;
    }

    function dnsResolve(host) {
        return system.addressOfHost(String(host)) || null;
    }

    function isResolvable(host) {
        return dnsResolve(host) !== null;
    }

    function myIpAddress() {
        return system.ownAddress();
    }

    // As a number; null: not four bytes with dots between them.
    function ipv4Number(address) {
        const parts = String(address).split(".");
        if (parts.length !== 4 || !parts.every(part => /^\d{1,3}$/.test(part) && part < 256))
            return null;
        return parts.reduce((number, part) => number * 256 + Number(part), 0);
    }

    // Its bytes, of which there are 4 or 16; null: no address.
    function addressBytes(address) {
        address = String(address).trim();
        const four = ipv4Number(address);
        if (four !== null)
            return [four >>> 24, four >>> 16 & 255, four >>> 8 & 255, four & 255];
        return ipv6Bytes(address);
    }

    // RFC 4291, 2.2.
    function ipv6Bytes(address) {
        const halves = address.split("::");
        const bytes = halves.map(half => half === "" ? [] : groupBytes(half.split(":")));
        if (halves.length > 2 || bytes.includes(null))
            return null;
        const zeros = 16 - bytes.reduce((count, half) => count + half.length, 0);
        if (halves.length === 1 ? zeros !== 0 : zeros < 2)
            return null;
        return bytes[0].concat(Array(zeros).fill(0), bytes[1] || []);
    }

    // The last group may be four bytes with dots between them.
    function groupBytes(groups) {
        const bytes = [];
        for (let i = 0; i < groups.length; ++i) {
            const four = i === groups.length - 1 ? ipv4Number(groups[i]) : null;
            if (four !== null)
                bytes.push(...addressBytes(groups[i]));
            else if (/^[0-9a-f]{1,4}$/i.test(groups[i]))
                bytes.push(parseInt(groups[i], 16) >> 8, parseInt(groups[i], 16) & 255);
            else
                return null;
        }
        return bytes;
    }

    function isInNetEx(address, prefix) {
        const [start, size, more] = String(prefix).split("/");
        const bytes = addressBytes(address), net = addressBytes(start);
        if (bytes === null || net === null || bytes.length !== net.length ||
            more !== undefined || !/^\d{1,3}$/.test(size) || size > net.length * 8)
            return false;
        return net.every((byte, i) => {
            const bits = Math.min(Math.max(size - i * 8, 0), 8);
            return ((byte ^ bytes[i]) & (255 << (8 - bits))) === 0;
        });
    }

    function dnsResolveEx(host) {
        return system.addressesOfHost(String(host));
    }

    function isResolvableEx(host) {
        return dnsResolveEx(host) !== "";
    }

    function myIpAddressEx() {
        return system.ownAddresses();
    }

    // Those of IPv6 first; false: not all of them are addresses.
    function sortIpAddressList(list) {
        const addresses = String(list).split(";").map(text => text.trim());
        const known = new Map(addresses.map(address => [address, addressBytes(address)]));
        if (addresses.some(address => known.get(address) === null))
            return false;
        return addresses.sort((one, other) => {
            const a = known.get(one), b = known.get(other);
            return b.length - a.length || compare(a, b);
        }).join(";");
    }

    function getClientVersion() {
        return "1.0";
    }

    function isInNet(host, network, mask) {
        let address = ipv4Number(host);
        if (address === null)
            address = ipv4Number(dnsResolve(host));
        const net = ipv4Number(network), bits = ipv4Number(mask);
        return address !== null && net !== null && bits !== null &&
            ((address ^ net) & bits) === 0;
    }

    // What a pattern can be at one place after the other: "steps" holds for each place a character,
    // "?" or "*" as an object, or, as an array, the places where its alternatives begin. Brackets
    // that do not match one another are characters like any other.
    function shellPattern(text) {
        const steps = [], open = [];
        const anyone = {matches: () => true}, anyNumber = {matches: () => true, repeats: true};
        let depth = 0;
        const isPaired = Array.from(text).every(character => {
            depth += character === "(" ? 1 : character === ")" ? -1 : 0;
            return depth >= 0;
        }) && depth === 0;
        // A group is a fork to its alternatives, each of which ends in a jump behind the group.
        for (const character of text) {
            if (isPaired && character === "(") {
                open.push({fork: steps.length, jumps: []});
                steps.push([steps.length + 1]);
            } else if (open.length > 0 && character === "|") {
                open[open.length - 1].jumps.push(steps.length);
                steps.push([]);
                steps[open[open.length - 1].fork].push(steps.length);
            } else if (isPaired && character === ")") {
                for (const jump of open.pop().jumps)
                    steps[jump].push(steps.length);
            } else {
                steps.push(character === "*" ? anyNumber : character === "?" ? anyone
                    : {matches: other => other === character});
            }
        }
        return steps;
    }

    // All places are followed at once, so that no pattern takes more than length times length
    // steps.
    function shExpMatch(text, pattern) {
        const steps = shellPattern(String(pattern));
        let places = new Set();
        const enter = (set, first) => {
            const waiting = [first];
            while (waiting.length > 0) {
                const place = waiting.pop();
                if (set.has(place))
                    continue;
                set.add(place);
                if (Array.isArray(steps[place]))
                    waiting.push(...steps[place]);
                else if (place < steps.length && steps[place].repeats)
                    waiting.push(place + 1);
            }
        };
        enter(places, 0);
        for (const character of String(text)) {
            const next = new Set();
            for (const place of places) {
                const step = steps[place];
                if (step !== undefined && !Array.isArray(step) && step.matches(character))
                    enter(next, step.repeats ? place : place + 1);
            }
            places = next;
        }
        return places.has(steps.length);
    }

    // Today's date and time, with the words that ask for GMT taken off the arguments.
    function momentFor(words) {
        const isGMT = words.length > 0 && words[words.length - 1] === "GMT";
        if (isGMT)
            words.pop();
        const now = new Date();
        const part = name => isGMT ? now["getUTC" + name]() : now["get" + name]();
        return {
            weekday: part("Day"), day: part("Date"), month: part("Month"),
            year: part("FullYear"), hour: part("Hours"), minute: part("Minutes"),
            second: part("Seconds"),
        };
    }

    function compare(a, b) {
        for (let i = 0; i < a.length; ++i) {
            if (a[i] !== b[i])
                return a[i] < b[i] ? -1 : 1;
        }
        return 0;
    }

    // Both ends belong to it; one that ends before it begins goes round.
    function isBetween(value, first, last) {
        const afterFirst = compare(value, first) >= 0, beforeLast = compare(value, last) <= 0;
        return compare(first, last) <= 0 ? afterFirst && beforeLast : afterFirst || beforeLast;
    }

    function weekdayRange() {
        const words = Array.from(arguments), now = momentFor(words);
        const numbers = words.map(word => days.indexOf(String(word).toUpperCase()));
        if (numbers.length < 1 || numbers.length > 2 || numbers.includes(-1))
            return false;
        return isBetween([now.weekday], [numbers[0]], [numbers[numbers.length - 1]]);
    }

    // What a word of a date says; the larger units come first in comparisons.
    function dateUnit(word) {
        const month = months.indexOf(String(word).toUpperCase());
        if (month >= 0)
            return {name: "month", value: month};
        const number = Math.trunc(Number(word));
        if (!(number > 0))
            return null;
        return {name: number > 31 ? "year" : "day", value: number};
    }

    function dateRange() {
        const words = Array.from(arguments), now = momentFor(words);
        const units = words.map(dateUnit);
        if (units.length < 1 || units.includes(null))
            return false;
        const half = units.length === 1 ? 1 : units.length / 2;
        const first = units.slice(0, half), last = units.slice(-half);
        if (half > 3 || first.some((unit, i) => unit.name !== last[i].name))
            return false;
        const names = ["year", "month", "day"].filter(name =>
            first.some(unit => unit.name === name));
        const values = side => names.map(name => side.find(unit => unit.name === name).value);
        return isBetween(names.map(name => now[name]), values(first), values(last));
    }

    // Hours count whole, and so do minutes: from 9 to 17 includes 17:59.
    function timeRange() {
        const words = Array.from(arguments), now = momentFor(words);
        const numbers = words.map(Number);
        if (![1, 2, 4, 6].includes(numbers.length) || numbers.some(isNaN))
            return false;
        const half = numbers.length === 1 ? 1 : numbers.length / 2;
        const time = [now.hour, now.minute, now.second].slice(0, half);
        return isBetween(time, numbers.slice(0, half), numbers.slice(-half));
    }

    function alert(message) {
        system.alert(String(message));
    }

    return {
        isPlainHostName, dnsDomainIs, localHostOrDomainIs, isResolvable, isInNet, dnsResolve,
        myIpAddress, isInNetEx, dnsResolveEx, isResolvableEx, myIpAddressEx, sortIpAddressList,
        getClientVersion, dnsDomainLevels, shExpMatch, weekdayRange, dateRange, timeRange, alert,
    };
})
