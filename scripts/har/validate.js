// Checks HTTP archives against the JSON schema of HAR 1.2: node validate.js FILE...
import { readFileSync } from "node:fs";
import { createRequire } from "node:module";
import Ajv from "ajv";
import addFormats from "ajv-formats";

const require = createRequire(import.meta.url);
const ajv = new Ajv({ allErrors: true, strict: false });
addFormats(ajv);
ajv.addMetaSchema(require("ajv/dist/refs/json-schema-draft-06.json"));
ajv.addSchema(Object.values(require("har-schema")));

let good = true;
for (const file of process.argv.slice(2)) {
    const archive = JSON.parse(readFileSync(file, "utf8"));
    if (!ajv.validate("har.json#", archive)) {
        good = false;
        for (const error of ajv.errors) {
            console.log(`${file}: ${error.instancePath} ${error.message}`);
        }
    }
}
process.exitCode = good ? 0 : 1;
