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

    function isInNet(host, network, mask) {
        let address = ipv4Number(host);
        if (address === null)
            address = ipv4Number(dnsResolve(host));
        const net = ipv4Number(network), bits = ipv4Number(mask);
        return address !== null && net !== null && bits !== null &&
            ((address ^ net) & bits) === 0;
    }

    // Goes back to the last star only, so that it takes no more than length times length steps.
    function shExpMatch(text, pattern) {
        text = String(text);
        pattern = String(pattern);
        let at = 0, next = 0, star = -1, resume = 0;
        while (at < text.length) {
            if (pattern[next] === "*") {
                star = next++;
                resume = at;
            } else if (pattern[next] === "?" || pattern[next] === text[at]) {
                ++next;
                ++at;
            } else if (star >= 0) {
                next = star + 1;
                at = ++resume;
            } else {
                return false;
            }
        }
        while (pattern[next] === "*")
            ++next;
        return next === pattern.length;
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
        myIpAddress, dnsDomainLevels, shExpMatch, weekdayRange, dateRange, timeRange, alert,
    };
})
