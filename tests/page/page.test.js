// The page at /_control/ in a browser, against a running simulator and a running kelo; scripts/check-page runs it.
import assert from 'node:assert/strict';
import {execFile, spawn} from 'node:child_process';
import {cpSync, mkdtempSync, readFileSync, rmSync, writeFileSync} from 'node:fs';
import http from 'node:http';
import {createRequire} from 'node:module';
import {tmpdir} from 'node:os';
import {join} from 'node:path';
import {createInterface} from 'node:readline';
import {after, before, test} from 'node:test';
import {promisify} from 'node:util';
import {chromium} from 'playwright-core';

const {KELO_BIN, KELO_SAMPLES, KELO_BROWSER, KELO_PICTURE} = process.env;
const folder = mkdtempSync(join(tmpdir(), 'kelo-page-'));
const axe = readFileSync(createRequire(import.meta.url).resolve('axe-core/axe.min.js'), 'utf8');
const evil = '<img src=x onerror="document.title=1">';
const strayRequests = [];
const complaints = []; // of the browser's console
let isCutOff = false; // by the test
let browser;
let page;
let simulator;

/** A simulator with its first two lines read: its address and, behind a fault proxy, the one past the faults. */
async function start(...options) {
    const process = spawn(join(KELO_BIN, 'kelo-simulator'), ['--exit-with-parent', ...options], {
        stdio: ['ignore', 'pipe', 'pipe'],
    });
    const errors = [];
    createInterface({input: process.stderr}).on('line', (text) => errors.push(text.split(' ').at(-1)));
    const [text] = await new Promise((resolve) =>
        createInterface({input: process.stdout}).once('line', (...line) => resolve(line)),
    );
    return {process, url: text.split(' ').at(-1), past: errors.at(-1)};
}

function stop({process}) {
    return new Promise((resolve) => process.once('exit', resolve).kill());
}

/** What kelo prints and its exit code. */
async function kelo(...words) {
    const env = {
        ...process.env,
        KELO_API_URL: simulator.url,
        KELO_USERNAME: 'kelo',
        KELO_PASSWORD: 'kelo',
        KELO_INSTALLATION: 'INST-1001',
    };
    try {
        return {code: 0, text: (await promisify(execFile)(join(KELO_BIN, 'kelo'), words, {env})).stdout};
    } catch (error) {
        return {code: error.code, text: error.stderr};
    }
}

/** The status of a request that a browser would not make. */
function statusOf(path, options) {
    return new Promise((resolve, reject) => {
        http.request(simulator.url + path, options, (answer) => resolve(answer.resume().statusCode))
            .on('error', reject)
            .end('{}');
    });
}

const control = (path, method = 'GET', body = undefined) => fetch(`${simulator.url}/_control/${path}`, {method, body});
const tab = (name) => page.getByRole('tab', {name});
const panel = () => page.locator('[role=tabpanel]:visible');
const rows = () => page.locator('#journal-table > tbody');
const press = (name) => panel().getByRole('button', {name, exact: true}).click();

async function open(url, options = {}) {
    const context = await browser.newContext({viewport: {width: 1360, height: 860}, timezoneId: 'UTC', ...options});
    const opened = await context.newPage();
    opened.on('console', (message) => {
        if (message.type() === 'error' && !(isCutOff && message.text().includes('net::ERR'))) {
            complaints.push(message.text());
        }
    });
    opened.on('pageerror', (error) => complaints.push(String(error)));
    opened.on('request', (request) => request.url().startsWith(`${url}/`) || strayRequests.push(request.url()));
    await opened.goto(`${url}/_control/`);
    await shows(opened.locator('#link'), 'live');
    return opened;
}

/** Waits until the element holds the text. */
const shows = (locator, text) => locator.filter({hasText: text}).first().waitFor({timeout: 10_000});

/** Waits until the page has looked for changes anew and has shown what it found: the third look comes after the second. */
async function looks() {
    for (let count = 0; count < 3; ++count) {
        await page.waitForResponse((response) => response.url().endsWith('/changes'));
    }
}

async function answerQuestion(text, name) {
    await shows(page.getByRole('dialog'), text);
    await page.getByRole('dialog').getByRole('button', {name}).click();
}

before(async () => {
    browser = await chromium.launch({
        executablePath: KELO_BROWSER,
        args: ['--no-sandbox', '--disable-gpu', '--disable-lcd-text'],
    });
    simulator = await start('--port', '0', '--base-path', '/api/v1');
    page = await open(simulator.url);
});

after(async () => {
    await browser.close();
    await stop(simulator);
    rmSync(folder, {recursive: true});
});

test('calls appear in the journal as they come, and tell all of themselves', async () => {
    await kelo('requests', 'list');
    await shows(rows(), 'getRequests');
    const toggle = rows().first().getByRole('button');
    await toggle.focus();
    await page.keyboard.press('Enter');
    const details = rows().first().locator('.details');
    await shows(details, '(redacted)');
    await shows(details, '"GetOnlyActiveRequests": true');
    await shows(details, 'application/json');

    const operation = page.locator('#journal-filter select');
    await kelo('connections', 'list');
    await operation.selectOption('getConnectionsForLicense');
    await shows(page.locator('#journal-news'), '1 of 2 requests');
    await page.locator('#journal-filter input').fill('999');
    await shows(page.locator('#journal > .refusal'), 'status: 999; from 0 to 599');
    await page.locator('#journal-filter input').fill('');
    await operation.selectOption('');

    await page.getByRole('button', {name: 'Pause'}).click();
    await shows(page.locator('#link'), 'paused');
    await kelo('addresses');
    await looks();
    assert.equal(await rows().count(), 2);
    await page.getByRole('button', {name: 'Pause'}).click();
    await shows(rows(), 'getShippingAddresses');

    await page.getByRole('button', {name: 'Clear…'}).click();
    await answerQuestion('Forget all', 'Cancel');
    await looks();
    assert.equal(await rows().count(), 3);
    await page.getByRole('button', {name: 'Clear…'}).click();
    await answerQuestion('Forget all', 'Clear');
    await shows(page.locator('#journal-news'), /^0 requests$/);
});

test('a fault is switched on by keyboard, strikes, and goes', async () => {
    const toggle = panel().getByRole('switch', {name: 'status', exact: true});
    const kind = panel()
        .locator('.kinds > li')
        .filter({has: page.getByRole('switch', {name: 'status', exact: true})});
    await panel().getByLabel('Operation').focus();
    await page.keyboard.type('getRequests');
    const status = kind.getByLabel('Status');
    await status.fill('99999');
    await toggle.focus();
    await page.keyboard.press('Space');
    await shows(kind.locator('.refusal'), 'Status: 99999; from 200 to 599');
    await status.fill('503');
    await toggle.focus();
    await page.keyboard.press('Space');
    await shows(tab('Faults'), '1');
    assert.equal(await toggle.getAttribute('aria-checked'), 'true');
    assert.equal((await kelo('requests', 'list')).code, 1);
    await shows(panel().locator('.in-force'), 'getRequests; Status 503; until taken away has struck 1 time');
    await shows(rows(), 'status #1');
    await panel().getByRole('button', {name: 'Take away status #1'}).click();
    await panel().locator('.empty').waitFor();
    assert.equal(await toggle.getAttribute('aria-checked'), 'false');
    assert.equal((await kelo('requests', 'list')).code, 0);
});

test('partners act on a request, and are refused in place', async () => {
    await tab('Requests').click();
    await page.getByLabel('Find').fill('labdesign');
    await shows(panel().locator('.news'), ' of ');
    const id = await panel().locator('.cards > li').last().getAttribute('data-key');
    const card = panel().locator(`[data-key=${id}]`);
    await card.getByRole('button').first().click();
    await card.getByLabel('Size').fill('many');
    await press('reply');
    await shows(card.locator('.refusal'), 'A member has the wrong type: Size; wanted: integer');
    await card.getByLabel('Size').fill('');
    await card.getByLabel('Text').fill('We suggest zirconia.');
    await press('reply');
    await shows(card, 'Answered');
    await shows(card, 'We suggest zirconia.');
    assert.match((await kelo('requests', 'show', id)).text, /We suggest zirconia\./);
    await press('withdraw');
    await card.waitFor({state: 'detached'});
    assert.notEqual((await kelo('requests', 'show', id)).code, 0);

    await page.getByLabel('Find').fill(evil);
    await panel().getByText('A new request from a partner').click();
    await page.getByLabel('PatientFirstName').fill(evil);
    await press('Create');
    await shows(panel().locator('.cards'), evil);
});

test('an order shows its uploads and advances', async () => {
    await tab('Orders').click();
    cpSync(join(KELO_SAMPLES, 'order.json'), join(folder, 'order.json'));
    await control('fault', 'POST', '{"Operation": "uploadOrderFile", "Kind": "drop"}');
    await kelo('orders', 'create', join(folder, 'order.json'), '--files', join(KELO_SAMPLES, 'files'));
    const card = panel().locator('.cards > li').first();
    await shows(card, '0 of 4 files up');
    const advance = card.getByRole('button', {name: 'advance'});
    assert.ok(await advance.isDisabled());
    await kelo(
        'orders',
        'create',
        join(folder, 'order.json'),
        '--files',
        join(KELO_SAMPLES, 'files'),
        '--resume',
        await card.getAttribute('data-key'),
    );
    await shows(card, '4 of 4 files up');
    await shows(card, 'Received');
    await advance.click();
    await shows(card, 'Checked');
});

test('all data are shown, taken, put in and reset', async () => {
    await tab('Data').click();
    await press('Show');
    await press(/^Collaboration/);
    await press(/^Requests /);
    await shows(panel().locator('#tree'), 'REQ-000001');
    const [download] = await Promise.all([page.waitForEvent('download'), panel().getByText('Download').click()]);
    const state = JSON.parse(readFileSync(await download.path()));
    const file = join(folder, 'case.json');
    const put = async (content) => {
        writeFileSync(file, content);
        await panel().getByLabel("A case of one's own").setInputFiles(file);
        await press('Put in…');
        await answerQuestion('Put case.json in the place of all data', 'Put in');
    };
    await put('{"Now": 7}');
    await shows(panel().locator('#put .refusal'), 'Now: a time in ISO form is wanted');
    await put(JSON.stringify({...state, Installations: {...state.Installations, 'INST-3003': evil}}));
    await shows(page.locator('#installations'), `INST-3003 ${evil}`);
    await panel().getByLabel('Seed').fill('-1');
    await press('Reset…');
    await answerQuestion('Begin anew', 'Reset');
    await shows(panel().locator('#reset .refusal'), 'Seed: -1; from 0 to');
    await panel().getByLabel('Seed').fill('');
    await press('Reset…');
    await answerQuestion('Begin anew', 'Reset');
    await shows(page.locator('#journal-news'), /^0 requests$/);
    assert.doesNotMatch(await page.locator('#installations').textContent(), /INST-3003/);
});

test('what is no text for people stays text', async () => {
    await fetch(`${simulator.url}/Installations/${encodeURIComponent(evil)}`);
    await fetch(`${simulator.url}/Orders?${evil}`, {method: 'POST', body: evil});
    await control('fault', 'POST', JSON.stringify({Kind: 'html', Body: evil}));
    await tab('Faults').click();
    await shows(panel().locator('.in-force'), evil);
    await shows(rows().first(), '/Orders?');
    await rows().first().getByRole('button').click();
    await shows(rows().first().locator('pre').first(), evil);
    assert.equal(await page.locator('img').count(), 0);
    assert.equal(await page.title(), 'KELO simulator');
    await control('faults', 'DELETE');
});

test('others than the page itself are kept out', async () => {
    const own = new URL(simulator.url).origin;
    const policy = (await control('')).headers.get('content-security-policy');
    assert.match(policy, /default-src 'self';.*frame-ancestors 'none'/);
    for (const [status, path, method, headers] of [
        [200, '/_control/', 'GET', {}],
        [403, '/_control/', 'GET', {Host: 'evil.example'}],
        [403, '/_control/page/page.js', 'GET', {Host: 'evil.example'}],
        [403, '/_control/reset', 'POST', {Origin: 'http://evil.example'}],
        [403, '/_control/reset', 'POST', {Origin: 'null'}],
        [204, '/_control/reset', 'POST', {Origin: own}],
        [404, '/_control/page/Page.cpp', 'GET', {}],
    ]) {
        assert.equal(await statusOf(path, {method, headers}), status, `${method} ${path} ${JSON.stringify(headers)}`);
    }
});

test('toxics are switched on past them', async () => {
    const behindProxy = await start('--port', '0', '--fault-proxy');
    const through = await open(behindProxy.url);
    await through.getByRole('tab', {name: 'Line'}).click();
    const past = await through.getByText('the same page past the faults').getAttribute('href');
    assert.equal(past, `${behindProxy.past}/_control/`);
    const direct = await open(behindProxy.past);
    isCutOff = true;
    await direct.getByRole('tab', {name: 'Line'}).click();
    await direct.locator('#line').getByLabel('Stream').selectOption('upstream');
    await direct.getByRole('switch', {name: 'reset_peer'}).click();
    await shows(direct.locator('#line .in-force'), 'upstream; timeout 0 has struck');
    await shows(through.locator('#gone'), 'has not answered since');
    await direct.getByRole('button', {name: 'Take all away'}).click();
    await shows(through.locator('#link'), 'live');
    await Promise.all([through.context().close(), direct.context().close()]);
    await stop(behindProxy);
    isCutOff = false;
});

test('ten thousand entries and requests are shown in parts', async () => {
    const state = await (await control('state')).json();
    const [first] = state.Collaboration.Requests;
    const many = Array.from({length: 10_000}, (_, number) => ({...first, Id: `REQ-${200_000 + number}`}));
    await page.reload();
    await page.evaluate(() => {
        window.longest = 0;
        new PerformanceObserver((list) => {
            window.longest = Math.max(window.longest, ...list.getEntries().map((entry) => entry.duration));
        }).observe({type: 'longtask'});
    });
    assert.equal(
        (await control('state', 'PUT', JSON.stringify({...state, Collaboration: {...state.Collaboration, Requests: many}})))
            .status,
        204,
    );
    for (let count = 0; count < 100; ++count) {
        await Promise.all(
            Array.from({length: 100}, () => fetch(`${simulator.url}/Settings`).then((answer) => answer.arrayBuffer())),
        );
    }
    await shows(page.locator('#journal-news'), '10000 requests');
    assert.equal(await rows().count(), 100);
    await page.getByRole('button', {name: 'Show more (100 of 10000)'}).click();
    await page.getByRole('button', {name: 'Show more (200 of 10000)'}).waitFor();
    await tab('Requests').click();
    await page.getByLabel('Find').fill('');
    await shows(panel().locator('.news'), '10000 requests');
    assert.equal(await panel().locator('.cards > li').count(), 100);
    await tab('Data').click();
    await press('Show');
    await press(/^Collaboration/);
    await press(/^Requests /);
    await press('Show more (100 of 10000)');
    await panel().getByRole('button', {name: 'Show more (200 of 10000)'}).waitFor();
    const longest = await page.evaluate(() => window.longest);
    assert.ok(longest < 3_000, `the page stood still for ${longest} ms`);
    await control('reset', 'POST');
});

test('the page says that the simulator is gone, and comes back with it', async () => {
    isCutOff = true;
    await stop(simulator);
    await shows(page.locator('#gone'), 'has not answered since');
    simulator = await start('--port', new URL(simulator.url).port, '--base-path', '/api/v1');
    await shows(page.locator('#link'), 'live');
    await kelo('requests', 'list');
    await shows(rows(), 'getRequests');
    isCutOff = false;
});

for (const [colorScheme, width] of [
    ['light', 1360],
    ['dark', 1360],
    ['light', 400],
]) {
    test(`nothing bars the way: ${colorScheme}, ${width} pixels wide`, async () => {
        const looked = await open(simulator.url, {colorScheme, viewport: {width, height: 860}, reducedMotion: 'reduce'});
        await looked.evaluate(axe);
        for (const name of ['Faults', 'Line', 'Requests', 'Orders', 'Data']) {
            await looked.getByRole('tab', {name}).click();
            const {violations} = await looked.evaluate(() => window.axe.run());
            const serious = violations.filter(({impact}) => ['serious', 'critical'].includes(impact));
            assert.deepEqual(
                serious.map(({id, nodes}) => [id, nodes[0].html]),
                [],
                name,
            );
            assert.ok(
                await looked.evaluate(() => document.scrollingElement.scrollWidth <= window.innerWidth),
                `${name} is too wide`,
            );
        }
        await looked.context().close();
    });
}

if (KELO_PICTURE) {
    test('the picture of the page', async () => {
        await control('reset', 'POST');
        await control('fault', 'POST', '{"Kind": "status", "Operation": "getPartners"}');
        await control('fault', 'POST', '{"Kind": "delay", "Operation": "createOrder", "Milliseconds": 400, "Times": -1}');
        for (const words of [
            ['connections', 'list'],
            ['orders', 'create', join(folder, 'order.json'), '--again', '--files', join(KELO_SAMPLES, 'files')],
            ['requests', 'list'],
            ['partners'],
        ]) {
            await kelo(...words);
        }
        const drawn = await open(simulator.url, {viewport: {width: 1160, height: 530}, reducedMotion: 'reduce'});
        const opened = drawn.locator('#journal-table > tbody').filter({hasText: '503'});
        await opened.getByRole('button').click();
        await shows(opened.locator('.details'), 'Answer');
        await drawn.mouse.move(600, 5);
        await drawn.screenshot({path: KELO_PICTURE});
        await drawn.context().close();
    });
}

test('the browser had nothing to complain about but refusals, and asked nobody else', () => {
    assert.deepEqual(
        complaints.filter((text) => !text.includes('status of 400')),
        [],
    );
    assert.deepEqual(strayRequests, []);
});
