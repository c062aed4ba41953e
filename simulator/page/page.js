// The page on the simulator. It asks the control resources, as any program can, and shows what they tell as text.

const rowsAtFirst = 100; // of each list; "more" shows as many again
const childrenAtFirst = 100; // of each list in the tree of all data
const charactersAtFirst = 20_000; // of each body
const millisecondsBetweenLooks = 500;
const millisecondsUntilSilence = 20_000; // a toxic may keep an answer back for ever

// ---- asking ---------------------------------------------------------------------------------------------------------

/** The simulator said no; the message is its own sentence. */
class Refusal extends Error {}

/** Nobody answered. */
class Silence extends Error {
    constructor() {
        super('The simulator does not answer.');
    }
}

function sentenceOf(status, text) {
    try {
        return JSON.parse(text)[0].Message;
    } catch {
        return `HTTP status ${status}`;
    }
}

/** What the control resource answers; the body is a file or becomes JSON. */
async function ask(method, resource, body) {
    let response;
    let text;
    try {
        const isFile = body === undefined || body instanceof Blob;
        response = await fetch(resource, {
            method,
            body: isFile ? body : JSON.stringify(body),
            cache: 'no-store',
            signal: AbortSignal.timeout(millisecondsUntilSilence),
        });
        text = await response.text();
    } catch {
        throw new Silence();
    }
    if (!response.ok) {
        throw new Refusal(sentenceOf(response.status, text));
    }
    return text === '' ? undefined : JSON.parse(text);
}

const get = (resource) => ask('GET', resource);

/** The resource with what is given of its query. */
function withQuery(resource, query) {
    const given = Object.entries(query).filter(([, value]) => value !== '');
    return `${resource}?${given.map(([name, value]) => `${name}=${encodeURIComponent(value)}`).join('&')}`;
}

// ---- elements -------------------------------------------------------------------------------------------------------

const byId = (id) => document.getElementById(id);

/** An element with its attributes, listeners ("onclick") and children. Texts become text nodes, never HTML. */
function make(tag, attributes = {}, ...children) {
    const element = document.createElement(tag);
    for (const [name, value] of Object.entries(attributes)) {
        if (name.startsWith('on')) {
            element.addEventListener(name.slice(2), value);
        } else if (value !== undefined) {
            element.setAttribute(name, value);
        }
    }
    element.append(...children);
    return element;
}

const button = (text, onclick, attributes = {}) => make('button', {type: 'button', onclick, ...attributes}, text);

/** Sets the text only if it is another one, so that a live region says nothing twice. */
function tell(element, text) {
    if (element.textContent !== text) {
        element.textContent = text;
    }
}

/** Where a focus goes whose element has gone. */
function focusNear(parent) {
    (parent.querySelector('button') ?? parent.closest('[tabindex]')).focus();
}

/**
 * Makes the parent hold one element an item, in their order. What is there already stays in its place, with its focus;
 * `fill(element, item)` is called for what is new or has changed.
 */
function showList(parent, tag, items, keyOf, fill) {
    const wanted = new Map(items.map((item) => [String(keyOf(item)), item]));
    const present = new Map();
    let hasLostFocus = false;
    for (const element of parent.querySelectorAll(':scope > [data-key]')) {
        if (wanted.has(element.dataset.key)) {
            present.set(element.dataset.key, element);
        } else {
            hasLostFocus ||= element.contains(document.activeElement);
            element.remove();
        }
    }
    let place = parent.querySelector(':scope > [data-key]');
    for (const [key, item] of wanted) {
        const element = present.get(key) ?? make(tag, {'data-key': key});
        const content = JSON.stringify(item);
        if (element.content !== content) {
            element.content = content;
            fill(element, item);
        }
        if (element === place) {
            place = place.nextElementSibling;
        } else {
            parent.insertBefore(element, place);
        }
    }
    if (hasLostFocus) {
        focusNear(parent);
    }
}

/** A button that opens and closes what `build` makes, which is made when it is first wanted. */
function opener(content, build, attributes = {}) {
    let region;
    const toggle = make('button', {type: 'button', 'aria-expanded': 'false', ...attributes}, ...content);
    toggle.addEventListener('click', () => {
        region ??= build(toggle);
        region.hidden = toggle.getAttribute('aria-expanded') === 'true';
        toggle.setAttribute('aria-expanded', String(!region.hidden));
    });
    return toggle;
}

/** The button below a list of which only a part is shown. */
function showMore(more, shown, matching, view) {
    more.hidden = shown >= matching;
    more.textContent = `Show more (${shown} of ${matching})`;
    more.onclick = () => {
        view.limit += rowsAtFirst;
        view.refresh().catch(hurry);
    };
}

const counted = (number, singular, plural) => `${number} ${number === 1 ? singular : plural}`;

const clock = () => new Date().toTimeString().slice(0, 8);

/** Resolves to whether the question is answered with yes. */
function confirmed(text, yes) {
    const dialog = byId('question');
    byId('question-text').textContent = text;
    byId('question-yes').textContent = yes;
    return new Promise((resolve) => {
        let answer = false;
        byId('question-yes').onclick = () => {
            answer = true;
            dialog.close();
        };
        byId('question-no').onclick = () => dialog.close();
        dialog.onclose = () => resolve(answer);
        dialog.showModal();
    });
}

/** Does what a button is for. A refusal is told at its place. */
async function act(place, work) {
    tell(place, '');
    try {
        await work();
    } catch (error) {
        tell(place, error.message);
    }
    hurry();
}

/** The form acts instead of being sent. */
function onSubmit(form, work) {
    form.addEventListener('submit', (event) => {
        event.preventDefault();
        act(form.querySelector('.refusal'), () => work(form.elements));
    });
}

// ---- fields ---------------------------------------------------------------------------------------------------------

let lastField = 0;

function hintOf(member) {
    const range = 'From' in member ? `from ${member.From} to ${member.To}` : '';
    const usual = 'Default' in member ? `usually ${member.Default}` : '';
    return [member.Meaning, range, usual].filter(Boolean).join('; ');
}

/** The value as the simulator wants it. What does not fit goes to it as it stands, to be refused in its words. */
function valueOf(member, text) {
    if (text === '') {
        return undefined;
    }
    if (member.Type === 'integer') {
        return /^\s*-?\d+\s*$/.test(text) ? Number(text) : text;
    }
    if (member.Type === 'any') {
        try {
            return JSON.parse(text);
        } catch {
            return text;
        }
    }
    return text;
}

/** A labelled input for a member of a body, as the simulator describes it; `choices` are pairs of value and text. */
function fieldFor(member, choices, initial = '') {
    const id = `field-${++lastField}`;
    const attributes = {id, 'aria-describedby': `${id}-hint`};
    const input = choices
        ? make('select', attributes, ...choices.map(([value, text]) => make('option', {value}, text)))
        : make('input', {
              ...attributes,
              autocomplete: 'off',
              inputmode: member.Type === 'integer' ? 'numeric' : 'text',
              placeholder: member.Default ?? '',
          });
    if (!choices) {
        input.value = initial;
    }
    const hint = make('span', {class: 'hint', id: `${id}-hint`}, hintOf(member));
    const element = make('div', {class: 'field'}, make('label', {for: id}, member.Name), input, hint);
    return {name: member.Name, element, input, value: () => valueOf(member, input.value)};
}

/** What is filled in, by the names of the members. */
function valuesOf(fields) {
    return Object.fromEntries(fields.map((field) => [field.name, field.value()]));
}

// ---- views ----------------------------------------------------------------------------------------------------------

/** A part of the page that is asked for as a whole. Of several answers under way only the last one counts. */
class View {
    limit = rowsAtFirst;
    #turn = 0;

    constructor(section, load, show) {
        this.section = byId(section);
        this.load = load;
        this.show = show;
        this.isStale = true;
    }

    async refresh() {
        const turn = ++this.#turn;
        const place = this.section.querySelector(':scope > .refusal');
        this.isStale = false;
        try {
            const answer = await this.load();
            if (turn === this.#turn) {
                tell(place, '');
                this.show(answer);
            }
        } catch (error) {
            if (!(error instanceof Refusal)) {
                this.isStale = true;
                throw error;
            }
            tell(place, error.message);
        }
    }
}

// ---- the journal ----------------------------------------------------------------------------------------------------

let isPaused = false;

function timeOf(text) {
    const time = new Date(text);
    const two = (number) => String(number).padStart(2, '0');
    const clock = [time.getHours(), time.getMinutes(), time.getSeconds()].map(two).join(':');
    const fraction = `.${String(time.getMilliseconds()).padStart(3, '0')}`;
    return make('time', {datetime: text, title: text}, clock, make('span', {class: 'quiet wide'}, fraction));
}

function statusOf(entry) {
    if (entry.Status === null) {
        return ['waiting', 'waiting'];
    }
    const families = {0: 'bad', 2: 'good', 3: 'odd', 4: 'bad', 5: 'bad'};
    return [entry.Status === 0 ? 'closed' : String(entry.Status), families[Math.floor(entry.Status / 100)] ?? 'odd'];
}

function pretty(text) {
    try {
        return JSON.stringify(JSON.parse(text), null, 2);
    } catch {
        return text;
    }
}

/** A body as far as the journal keeps it; the rest of a long one is shown when it is asked for. */
function bodyOf(text, base64) {
    const whole = base64 ?? pretty(text);
    if (whole === '') {
        return [make('p', {class: 'quiet'}, 'no body')];
    }
    const body = make('pre', {tabindex: '0', role: 'group', 'aria-label': 'body'}, whole.slice(0, charactersAtFirst));
    const parts = base64 === undefined ? [body] : [make('p', {class: 'quiet'}, 'no text; in base64'), body];
    if (whole.length > charactersAtFirst) {
        parts.push(
            button(`Show all ${whole.length} characters`, (event) => {
                body.textContent = whole;
                event.target.remove();
            }),
        );
    }
    return parts;
}

function headersOf(headers = {}) {
    const rows = Object.entries(headers).map(([name, value]) => make('div', {}, make('dt', {}, name), make('dd', {}, value)));
    return make('dl', {class: 'headers'}, ...rows);
}

async function showEntry(cell, number) {
    try {
        const entry = await get(`journal/${number}`);
        const answer =
            entry.Status === null
                ? [make('p', {class: 'quiet'}, 'not yet')]
                : [headersOf(entry.AnswerHeaders), ...bodyOf(entry.Answer, entry.AnswerBase64)];
        cell.replaceChildren(
            make(
                'div',
                {class: 'exchange'},
                make(
                    'div',
                    {},
                    make('h3', {}, `Request (${counted(entry.Size, 'byte', 'bytes')})`),
                    make('p', {}, make('code', {}, `${entry.Method} ${entry.Target}`)),
                    headersOf(entry.Headers),
                    ...bodyOf(entry.Body, entry.BodyBase64),
                ),
                make('div', {}, make('h3', {}, `Answer (${statusOf(entry)[0]})`), ...answer),
            ),
        );
    } catch (error) {
        cell.replaceChildren(make('p', {class: 'refusal'}, error.message));
    }
}

/** A request is a table body of its own, in which what is opened follows the line. */
function fillEntry(element, entry) {
    const [status, family] = statusOf(entry);
    const name = entry.Operation || 'no operation';
    if (!element.line) {
        element.details = make('td', {colspan: '6'});
        const build = () => {
            const row = make('tr', {class: 'details'}, element.details);
            element.append(row);
            showEntry(element.details, entry.Number);
            return row;
        };
        element.name = make('span', {class: 'operation'});
        element.toggle = opener([element.name, ' ', make('span', {class: 'quiet'}, `${entry.Method} ${entry.Target}`)], build, {
            class: 'plain',
        });
        element.line = make('tr');
        element.append(element.line);
    } else if (element.toggle.getAttribute('aria-expanded') === 'true') {
        showEntry(element.details, entry.Number);
    }
    element.name.textContent = name;
    const fault = entry.Fault ? make('span', {class: 'mark'}, `${entry.Fault.Kind} #${entry.Fault.Id}`) : '';
    const cells = [
        make('td', {class: 'quiet wide'}, entry.Number),
        make('td', {}, timeOf(entry.Time)),
        make('td', {class: `status ${family}`}, status),
        make('td', {class: 'number wide'}, entry.Milliseconds ?? ''),
        make('td', {}, fault),
    ];
    // The cell with the button stays: it may have the focus.
    element.cell ??= make('td', {class: 'what'}, element.toggle);
    for (const cell of [...element.line.children]) {
        if (cell !== element.cell) {
            cell.remove();
        }
    }
    if (!element.cell.parentNode) {
        element.line.append(element.cell);
    }
    element.cell.before(...cells.slice(0, 2));
    element.cell.after(...cells.slice(2));
}

function journalNews({Requests, Matching, Total, Dropped}) {
    const last = Requests.at(-1);
    const parts = [
        Matching === Total ? counted(Total, 'request', 'requests') : `${Matching} of ${counted(Total, 'request', 'requests')}`,
    ];
    if (last) {
        parts.push(`the last ${last.Operation || last.Method}, ${statusOf(last)[0]}`);
    }
    if (Dropped > 0) {
        parts.push(`${Dropped} older ones are gone`);
    }
    return parts.join('; ');
}

const journal = new View(
    'journal',
    () => {
        const {operation, status} = byId('journal-filter').elements;
        return get(
            withQuery('journal', {brief: 1, limit: journal.limit, operation: operation.value, status: status.value.trim()}),
        );
    },
    (answer) => {
        const {section} = journal;
        showList(byId('journal-table'), 'tbody', answer.Requests.reverse(), (entry) => entry.Number, fillEntry);
        section.querySelector('.empty').hidden = answer.Requests.length > 0;
        showMore(section.querySelector('.more'), answer.Requests.length, answer.Matching, journal);
        answer.Requests.reverse();
        tell(byId('journal-news'), journalNews(answer));
    },
);

function setUpJournal() {
    const filter = byId('journal-filter');
    filter.addEventListener('input', () => journal.refresh().catch(hurry));
    filter.addEventListener('submit', (event) => event.preventDefault());
    byId('journal-pause').addEventListener('click', (event) => {
        isPaused = !isPaused;
        event.target.setAttribute('aria-pressed', String(isPaused));
        hurry();
    });
    byId('journal-clear').addEventListener('click', async () => {
        if (await confirmed('Forget all requests in the journal?', 'Clear')) {
            await act(journal.section.querySelector(':scope > .refusal'), async () => {
                await ask('DELETE', 'journal');
                await journal.refresh();
            });
        }
    });
}

// ---- faults, of the service and of the line -------------------------------------------------------------------------

/** Switches for kinds of faults, each with its parameters, and the list of those in force. */
class Board extends View {
    constructor(rules) {
        super(
            rules.section,
            () => get(rules.list),
            (faults) => this.showFaults(faults),
        );
        this.section.append(byId('board').content.cloneNode(true));
        this.rules = rules;
        this.faults = [];
        this.switches = [];
        this.part('.clear').addEventListener('click', () => this.do(() => ask('DELETE', rules.list)));
    }

    part(selector) {
        return this.section.querySelector(selector);
    }

    do(work, place = this.part(':scope > .refusal')) {
        return act(place, async () => {
            await work();
            await this.refresh();
        });
    }

    /** `common`: the members of every fault; `scopes`: the choices of the one that says what a fault is for. */
    setUp(kinds, common, scopes) {
        const {scope, initial} = this.rules;
        this.common = common.map((member) => fieldFor(member, member.Name === scope ? scopes : undefined, initial[member.Name]));
        this.part('.common').replaceChildren(...this.common.map((field) => field.element));
        this.scope = this.common.find((field) => field.name === scope);
        this.scope.input.addEventListener('change', () => this.showSwitches());
        this.switches = [];
        this.part('.kinds').replaceChildren(...kinds.map((kind) => this.kindElement(kind)));
        this.showSwitches();
    }

    kindElement(kind) {
        const name = kind[this.rules.kind];
        const fields = kind.Parameters.map((member) => fieldFor(member));
        const id = `${this.rules.section}-${name}`;
        const refusal = make('p', {class: 'refusal', role: 'alert'});
        const toggle = button(name, () => this.do(() => this.toggle(name, fields), refusal), {
            role: 'switch',
            'aria-checked': 'false',
            'aria-describedby': id,
        });
        this.switches.push({name, toggle});
        return make(
            'li',
            {},
            toggle,
            make('p', {class: 'quiet', id}, kind.Meaning),
            make('div', {class: 'fields'}, ...fields.map((field) => field.element)),
            refusal,
        );
    }

    /** The faults of the kind that are in force for what is chosen. */
    active(name) {
        return this.faults.filter(
            (fault) => fault[this.rules.kind] === name && fault[this.rules.scope] === this.scope.value() && !fault.IsUsedUp,
        );
    }

    async toggle(name, fields) {
        const active = this.active(name);
        if (active.length === 0) {
            await ask('POST', this.rules.add, this.rules.body(name, valuesOf(this.common), valuesOf(fields)));
        }
        for (const fault of active) {
            await ask('DELETE', `${this.rules.list}/${fault.Id}`);
        }
    }

    showSwitches() {
        for (const {name, toggle} of this.switches) {
            toggle.setAttribute('aria-checked', String(this.active(name).length > 0));
        }
    }

    showFaults(faults) {
        this.faults = faults;
        const inForce = faults.filter((fault) => !fault.IsUsedUp).length;
        tell(byId(`${this.rules.section}-tab`).querySelector('.count'), inForce > 0 ? ` ${inForce}` : '');
        this.part('.empty').hidden = faults.length > 0;
        this.part('.clear').hidden = faults.length === 0;
        showList(
            this.part('.in-force'),
            'li',
            faults,
            (fault) => fault.Id,
            (element, fault) => this.fillFault(element, fault),
        );
        this.showSwitches();
    }

    fillFault(element, fault) {
        const name = `${fault[this.rules.kind]} #${fault.Id}`;
        element.text ??= make('span');
        const struck = fault.Fired === 0 ? 'has not struck' : `has struck ${counted(fault.Fired, 'time', 'times')}`;
        element.text.replaceChildren(
            make('strong', {}, name),
            ` ${this.rules.describe(fault)} `,
            make('span', {class: fault.Fired > 0 ? 'mark' : 'quiet'}, fault.IsUsedUp ? `${struck}, done` : struck),
        );
        element.classList.toggle('done', Boolean(fault.IsUsedUp));
        if (element.childElementCount === 0) {
            const take = () => this.do(() => ask('DELETE', `${this.rules.list}/${fault.Id}`));
            element.append(element.text, button('Take away', take, {'aria-label': `Take away ${name}`}));
        }
    }
}

const listed = (values) =>
    Object.entries(values)
        .map(([name, value]) => `${name} ${typeof value === 'string' ? value : JSON.stringify(value)}`)
        .join(', ');

const faults = new Board({
    section: 'faults',
    list: 'faults',
    add: 'fault',
    kind: 'Kind',
    scope: 'Operation',
    initial: {Times: '-1'},
    body: (kind, common, parameters) => ({Kind: kind, ...common, ...parameters}),
    describe({Id, Kind, Operation, Times, TimesLeft, Fired, IsUsedUp, Milliseconds, ...parameters}) {
        const more = Milliseconds > 0 ? {...parameters, Milliseconds} : parameters;
        const left = TimesLeft < 0 ? 'until taken away' : `${TimesLeft} more`;
        return [Operation === '*' ? 'all operations' : Operation, listed(more), IsUsedUp ? '' : left].filter(Boolean).join('; ');
    },
});

const line = new Board({
    section: 'line',
    list: 'toxics',
    add: 'toxic',
    kind: 'Type',
    scope: 'Stream',
    initial: {},
    body: (kind, common, parameters) => ({Type: kind, ...common, Attributes: parameters}),
    describe: ({Stream, Toxicity, Attributes}) =>
        [Stream, Toxicity < 1 ? `toxicity ${Toxicity}` : '', listed(Attributes)].filter(Boolean).join('; '),
});

// ---- requests and what their partners do ----------------------------------------------------------------------------

let actionMembers = [];

const patientOf = (request) => [request.PatientFirstName, request.PatientLastName].filter(Boolean).join(' ');
const chip = (text, family = '') => make('span', {class: `chip ${family}`}, text);

function noteElement(note) {
    return make('li', {}, make('span', {class: 'quiet'}, `${note.CreatedBy}: `), note.Text);
}

function fileElement(file, isUp, more) {
    return make(
        'li',
        {},
        make('span', {class: isUp ? 'good' : 'bad'}, isUp ? '✓ up ' : '○ missing '),
        file.Name,
        make('span', {class: 'quiet'}, ` ${more}`),
    );
}

const bytes = (number) => `${number.toLocaleString('en')} bytes`;

/** The list with its title, or nothing. */
function titled(title, items) {
    return items.length === 0 ? [] : [make('h4', {}, title), make('ul', {}, ...items)];
}

/** Buttons for what a partner can do with the request, and what they can say with it. */
function actionForm(element) {
    const {Id, Actions} = element.request;
    const statuses = [['', 'the usual'], ...requests.statuses.map((name, number) => [number, name])];
    const fields = actionMembers.map((member) => fieldFor(member, member.Name === 'Status' ? statuses : undefined));
    const refusal = make('p', {class: 'refusal', role: 'alert'});
    const send = (Action) =>
        act(refusal, async () => {
            await ask('POST', 'partner-action', {Action, RequestId: Id, ...valuesOf(fields)});
            await requests.refresh();
        });
    return make(
        'form',
        {onsubmit: (event) => event.preventDefault()},
        make('h4', {}, 'The partner'),
        make('div', {class: 'fields'}, ...fields.map((field) => field.element)),
        make('div', {class: 'bar'}, ...Actions.map((action) => button(action, () => send(action)))),
        refusal,
    );
}

function fillFacts(element) {
    const {request} = element;
    element.facts.replaceChildren(
        make(
            'p',
            {class: 'quiet'},
            listed({
                key: request.Key,
                due: request.DueDate || 'no day',
                installation: request.InstallationReference,
                transaction: request.TransactionId,
            }),
        ),
        ...titled('Notes', request.NoteInfos.map(noteElement)),
        ...titled(
            'Files',
            request.Files.map((file) => fileElement(file, file.State === 1, bytes(file.Size))),
        ),
    );
}

function fillRequest(element, request) {
    element.request = request;
    if (!element.facts) {
        element.facts = make('div');
        element.summary = make('span');
        const build = () => {
            const region = make('div', {class: 'inside'}, element.facts, actionForm(element));
            element.append(region);
            return region;
        };
        element.append(opener([make('code', {}, request.Id), ' ', element.summary], build, {class: 'plain'}));
    }
    const status = request.StatusName || String(request.Status);
    element.summary.replaceChildren(
        chip(request.Type),
        chip(status, request.IsActive ? 'good' : 'done'),
        ` ${patientOf(request)} `,
        make('span', {class: 'quiet'}, request.PartnerName),
    );
    fillFacts(element);
}

const requests = new View(
    'requests',
    () => get(withQuery('requests', {limit: requests.limit, text: byId('requests-filter').elements.text.value})),
    (answer) => {
        const {section} = requests;
        requests.statuses = answer.Statuses;
        showList(section.querySelector('.cards'), 'li', answer.Requests.reverse(), (request) => request.Id, fillRequest);
        showMore(section.querySelector('.more'), answer.Requests.length, answer.Matching, requests);
        tell(
            section.querySelector('.news'),
            answer.Matching === answer.Total
                ? counted(answer.Total, 'request', 'requests')
                : `${answer.Matching} of ${answer.Total}`,
        );
        showChoices(
            'Type',
            answer.Types.map((name, number) => [number, name]),
        );
        showChoices('ConnectionId', [
            ['', 'the first'],
            ...answer.Connections.map(({ConnectionId, Name}) => [ConnectionId, Name]),
        ]);
    },
);

/** The choices of a select of the form that creates; what is chosen stays chosen. */
function showChoices(name, choices) {
    const select = byId('create').fields?.find((field) => field.name === name)?.input;
    if (select) {
        showList(
            select,
            'option',
            choices,
            ([value]) => `option ${value}`,
            (option, [value, text]) => {
                option.value = value;
                option.textContent = text;
            },
        );
    }
}

function setUpRequests(members) {
    const isOfCreate = (member) => /(^|, )create(:|$)/.test(member.Meaning ?? '');
    actionMembers = members.filter((member) => !isOfCreate(member) && !['Action', 'RequestId'].includes(member.Name));
    const form = byId('create');
    form.fields = members
        .filter(isOfCreate)
        .map((member) => fieldFor(member, ['Type', 'ConnectionId'].includes(member.Name) ? [] : undefined));
    form.querySelector('.fields').replaceChildren(...form.fields.map((field) => field.element));
}

// ---- orders ---------------------------------------------------------------------------------------------------------

function itemElement(item) {
    const teeth = item.ToothNumberStart === 0 ? '' : ` teeth ${item.ToothNumberStart} to ${item.ToothNumberEnd}`;
    return make('li', {}, make('code', {}, item.ArticleNumber), teeth);
}

function fillOrder(element, order) {
    const {Files} = order;
    const missing = Files.filter((file) => file.Uploads === 0).length;
    if (!element.summary) {
        element.summary = make('span');
        element.facts = make('div', {class: 'inside'});
        element.refusal = make('p', {class: 'refusal', role: 'alert'});
        const advance = () =>
            act(element.refusal, async () => {
                await ask('POST', 'partner-action', {Action: 'advanceOrder', Reference: order.Reference});
                await orders.refresh();
            });
        element.advance = button('advance', advance, {'aria-label': `advance ${order.Reference}`});
        const build = () => {
            element.append(element.facts);
            return element.facts;
        };
        element.append(
            make(
                'div',
                {class: 'bar'},
                opener([make('code', {}, order.Reference), ' ', element.summary], build, {class: 'plain'}),
                element.advance,
            ),
            element.refusal,
        );
    }
    element.advance.disabled = !order.CanAdvance;
    const uploads = Files.length === 0 ? 'no files' : `${Files.length - missing} of ${counted(Files.length, 'file', 'files')} up`;
    element.summary.replaceChildren(
        chip(order.Kind),
        chip(order.StateName, order.State === 0 ? 'odd' : 'good'),
        ' ',
        make('span', {class: missing > 0 ? 'bad' : 'quiet'}, uploads),
        ...(order.TimesCreated > 1 ? [' ', make('span', {class: 'mark'}, `the same order ${order.TimesCreated} times`)] : []),
    );
    element.facts.replaceChildren(
        make('p', {class: 'quiet'}, listed({production: order.ProductionIdentifier, installation: order.InstallationReference})),
        ...titled('Items', order.OrderItems.map(itemElement)),
        ...titled(
            'Files',
            Files.map((file) =>
                fileElement(
                    file,
                    file.Uploads > 0,
                    `${bytes(file.Size)}${file.Uploads > 1 ? `, sent ${file.Uploads} times` : ''}`,
                ),
            ),
        ),
        make('details', {}, make('summary', {}, 'What created it'), ...bodyOf(JSON.stringify(order.Request))),
    );
}

const orders = new View(
    'orders',
    () => get('orders'),
    (all) => {
        const {section} = orders;
        const shown = all.slice(-orders.limit).reverse();
        showList(section.querySelector('.cards'), 'li', shown, (order) => order.Reference, fillOrder);
        showMore(section.querySelector('.more'), shown.length, all.length, orders);
        tell(section.querySelector('.news'), counted(all.length, 'order', 'orders'));
    },
);

// ---- all data -------------------------------------------------------------------------------------------------------

function sizeOf(value) {
    return Array.isArray(value) ? `${value.length} in the list` : `${Object.keys(value).length} members`;
}

function nameOf(value) {
    return value.Id ?? value.Name ?? value.ArticleNumber ?? '';
}

/** Appends the next children to the list, and a button for those that follow. */
function showChildren(list, entries, from = 0) {
    list.append(...entries.slice(from, from + childrenAtFirst).map(([key, value]) => treeElement(key, value)));
    const next = from + childrenAtFirst;
    if (next < entries.length) {
        const more = make(
            'li',
            {},
            button(`Show more (${next} of ${entries.length})`, () => {
                more.remove();
                showChildren(list, entries, next);
                list.children[next].querySelector('button')?.focus();
            }),
        );
        list.append(more);
    }
}

function treeElement(key, value) {
    const element = make('li');
    if (value === null || typeof value !== 'object') {
        element.append(make('span', {class: 'quiet'}, `${key}: `), JSON.stringify(value));
        return element;
    }
    const build = () => {
        const list = make('ul');
        showChildren(list, Object.entries(value));
        element.append(list);
        return list;
    };
    element.append(
        opener([`${key} `, make('span', {class: 'quiet'}, `${nameOf(value)} ${sizeOf(value)}`)], build, {class: 'plain'}),
    );
    return element;
}

const data = new View(
    'data',
    () => get('state'),
    (state) => {
        const list = make('ul', {class: 'tree'});
        showChildren(list, Object.entries(state));
        byId('tree').replaceChildren(list);
        byId('load').textContent = 'Show again';
        data.asOf = `as of ${clock()}`;
        tell(data.section.querySelector('.news'), data.asOf);
    },
);

function setUpData() {
    onSubmit(byId('reset'), async ({seed}) => {
        if (await confirmed('Begin anew with these data, without journal and faults?', 'Reset')) {
            await ask('POST', 'reset', seed.value.trim() === '' ? {} : {Seed: valueOf({Type: 'integer'}, seed.value)});
            await setUp();
        }
    });
    onSubmit(byId('put'), async ({file}) => {
        if (file.files.length === 0) {
            throw new Error('Choose a file first.');
        }
        if (await confirmed(`Put ${file.files[0].name} in the place of all data, until the next reset?`, 'Put in')) {
            await ask('PUT', 'state', file.files[0]);
            await setUp();
        }
    });
    byId('load').addEventListener('click', () => data.refresh().catch(hurry));
}

// ---- tabs -----------------------------------------------------------------------------------------------------------

const panels = {faults, line, requests, orders, data};
const tabs = [...document.querySelectorAll('[role=tab]')];
const chosenPanel = () => panels[tabs.find((tab) => tab.getAttribute('aria-selected') === 'true').getAttribute('aria-controls')];

function choose(chosen) {
    for (const tab of tabs) {
        const isChosen = tab === chosen;
        tab.setAttribute('aria-selected', String(isChosen));
        tab.tabIndex = isChosen ? 0 : -1;
        byId(tab.getAttribute('aria-controls')).hidden = !isChosen;
    }
    hurry();
}

function setUpTabs() {
    for (const [at, tab] of tabs.entries()) {
        tab.addEventListener('click', () => choose(tab));
        tab.addEventListener('keydown', (event) => {
            const places = {ArrowLeft: at - 1, ArrowRight: at + 1, Home: 0, End: -1};
            if (event.key in places) {
                event.preventDefault();
                const next = tabs.at(places[event.key] % tabs.length);
                next.focus();
                choose(next);
            }
        });
    }
}

// ---- what the simulator can be told ---------------------------------------------------------------------------------

function showLine(index) {
    const proxy = index.FaultProxy;
    const way = byId('line-way');
    line.section.classList.toggle('off', proxy === null);
    if (proxy === null) {
        way.textContent = 'There is none; start the simulator with --fault-proxy.';
    } else if (String(proxy.Port) === location.port) {
        const direct = new URL(location.href);
        direct.port = proxy.PortWithoutFaults;
        direct.hostname = '127.0.0.1';
        way.replaceChildren(
            'This page comes through it, and is struck like others; ',
            make('a', {href: direct.href}, 'the same page past the faults'),
            '.',
        );
    } else {
        way.textContent = 'This page does not come through it.';
    }
}

/** Builds the parts that the simulator describes: operations, kinds of faults, what partners can do. */
async function setUp() {
    const index = await get('../_control');
    const bodyOfResource = (path) => index.Resources.filter((resource) => resource.Path === `/_control/${path}`).at(-1).Body;
    const operations = [...new Set(index.Operations.map((operation) => operation.Name))].sort();
    const select = byId('journal-filter').elements.operation;
    showList(
        select,
        'option',
        operations,
        (name) => name,
        (option, name) => {
            option.value = option.textContent = name;
        },
    );
    byId('address').textContent = new URL('..', location.href).href.replace(/\/$/, '');
    byId('installations').textContent = index.Installations.map(({Id, Name}) => `${Id} ${Name}`).join(' · ');
    faults.setUp(
        index.Faults,
        bodyOfResource('fault').filter((member) => member.Name !== 'Kind'),
        [['*', 'all'], ...operations.map((name) => [name, name])],
    );
    line.setUp(
        index.Toxics,
        bodyOfResource('toxic').filter((member) => !['Type', 'Attributes'].includes(member.Name)),
        [
            ['downstream', 'downstream'],
            ['upstream', 'upstream'],
        ],
    );
    showLine(index);
    line.isThere = index.FaultProxy !== null;
    setUpRequests(bodyOfResource('partner-action'));
}

// ---- looking --------------------------------------------------------------------------------------------------------

let lastChanges;
let isConnected = false;
let goneSince = clock();
let isHurried = false;
let wake = () => {};

/** Looks at once. */
function hurry() {
    isHurried = true;
    wake();
}

function showLink(isThere) {
    if (isConnected && !isThere) {
        goneSince = clock();
    }
    isConnected = isThere;
    document.body.classList.toggle('gone', !isThere);
    byId('gone').hidden = isThere;
    tell(
        byId('gone'),
        isThere ? '' : `The simulator has not answered since ${goneSince}. This page goes on by itself when it is back.`,
    );
    const state = isPaused ? 'paused' : 'live';
    tell(byId('link'), isThere ? state : 'gone');
}

/** Asks whether anything has changed, and then for what is shown of it. */
async function look() {
    const {Changes} = await get('changes');
    if (!isConnected) {
        await setUp();
    }
    if (Changes !== lastChanges || !isConnected) {
        for (const view of [journal, ...Object.values(panels)]) {
            view.isStale = true;
        }
        tell(data.section.querySelector('.news'), data.asOf ? `${data.asOf}; perhaps not the newest` : '');
    }
    lastChanges = Changes;
    // The toxics strike without a call that changes anything. All data are many: they are shown when somebody asks.
    line.isStale = line.isThere;
    const shown = new Set([faults, line, chosenPanel(), ...(isPaused ? [] : [journal])]);
    shown.delete(data);
    await Promise.all([...shown].filter((view) => view.isStale).map((view) => view.refresh()));
}

async function keepLooking() {
    for (;;) {
        isHurried = false;
        try {
            await look();
            showLink(true);
        } catch (error) {
            showLink(false);
            if (!(error instanceof Silence)) {
                console.error(error);
            }
        }
        if (!isHurried) {
            await new Promise((resolve) => {
                wake = resolve;
                setTimeout(resolve, millisecondsBetweenLooks);
            });
        }
    }
}

setUpJournal();
setUpTabs();
setUpData();
byId('requests-filter').addEventListener('input', () => requests.refresh().catch(hurry));
byId('requests-filter').addEventListener('submit', (event) => event.preventDefault());
onSubmit(byId('create'), async () => {
    await ask('POST', 'partner-action', {Action: 'create', ...valuesOf(byId('create').fields)});
    await requests.refresh();
});
keepLooking();
