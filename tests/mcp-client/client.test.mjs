// An agent's view of `kestrow mcp`: the official MCP client library starts the server over
// standard input and output in a temporary home, lists its tools and calls each one.
// Usage: node client.test.mjs /path/to/kestrow
import assert from 'node:assert/strict';
import { existsSync, mkdirSync, mkdtempSync, readFileSync, rmSync, writeFileSync } from 'node:fs';
import { tmpdir } from 'node:os';
import { dirname, join } from 'node:path';
import { fileURLToPath } from 'node:url';

const here = dirname(fileURLToPath(import.meta.url));
if (!existsSync(join(here, 'node_modules', '@modelcontextprotocol', 'sdk'))) {
  console.error(`The MCP client library is not installed in ${here}: run scripts/install-deps.sh.`);
  process.exit(1);
}
const { Client } = await import('@modelcontextprotocol/sdk/client/index.js');
const { StdioClientTransport } = await import('@modelcontextprotocol/sdk/client/stdio.js');

const kestrow = process.argv[2];
assert.ok(kestrow && existsSync(kestrow), 'give the kestrow binary as the first argument');

const home = mkdtempSync(join(tmpdir(), 'kestrow-mcp-client-'));
const file = (relative, bytes) => {
  const path = join(home, relative);
  mkdirSync(dirname(path), { recursive: true });
  writeFileSync(path, bytes);
  return path;
};

// A developer's home: a uv cache, a tool's cache to clean for real, a heavy cache folder that
// no rule knows, and one application (an AppImage with its desktop entry).
const uvWheel = file('.cache/uv/wheels-v1/pkg.whl', Buffer.alloc(300000, 1));
const junk = file('.cache/junk-tool/blob.bin', Buffer.alloc(50000, 2));
file('.cache/blobcache/0/data.bin', Buffer.alloc(3 * 1024 * 1024, 3));
const appImage = file('Applications/Gizmo.AppImage', Buffer.concat([Buffer.from('\x7fELF'), Buffer.alloc(4096)]));
file('.local/share/applications/com.example.gizmo.desktop',
     `[Desktop Entry]\nType=Application\nName=Gizmo\nExec=${appImage}\n`);

const transport = new StdioClientTransport({
  command: kestrow,
  args: ['mcp'],
  env: {
    PATH: process.env.PATH,
    HOME: home,
    XDG_DATA_HOME: join(home, '.local/share'),
    XDG_CONFIG_HOME: join(home, '.config'),
    XDG_CACHE_HOME: join(home, '.cache'),
    XDG_STATE_HOME: join(home, '.local/state'),
  },
  stderr: 'inherit',
});
const client = new Client({ name: 'kestrow-test', version: '1.0.0' });

// The tool's one text item, parsed as JSON unless `plain`.
async function call(name, args, { plain = false, isError = false } = {}) {
  const result = await client.callTool({ name, arguments: args });
  assert.equal(result.content.length, 1, name);
  assert.equal(result.content[0].type, 'text', name);
  assert.equal(result.isError, isError, `${name}: ${result.content[0].text}`);
  return plain ? result.content[0].text : JSON.parse(result.content[0].text);
}

const isoStamp = /^\d{4}-\d\d-\d\dT\d\d:\d\d:\d\d/;

try {
  await client.connect(transport);
  assert.equal(client.getServerVersion().name, 'kestrow');
  assert.equal(client.getServerVersion().version, '1.0.0');
  await client.ping();

  const { tools } = await client.listTools();
  assert.deepEqual(tools.map((tool) => tool.name), [
    'scan_storage', 'clean_storage', 'inspect_directory', 'list_apps', 'uninstall_app',
    'get_system_vitals', 'list_rules', 'register_rule', 'inspect_anomalies',
  ]);
  assert.deepEqual(tools[7].inputSchema.required, ['id', 'name', 'pattern', 'category', 'risk_tier']);

  const scan = await call('scan_storage', {});
  assert.match(scan.startedAt, isoStamp);
  const uvItem = scan.items.find((item) => item.path.includes('/.cache/uv/'));
  assert.ok(uvItem, `the uv cache is found: ${JSON.stringify(scan.items.map((item) => item.path))}`);
  assert.equal(scan.summary.totalItems, scan.items.length);
  const small = await call('scan_storage', { min_size_mb: 1000 });
  assert.equal(small.items.length, 0);
  assert.equal(small.summary.totalItems, 0);

  const dry = await call('clean_storage', { paths: [join(home, '.cache/uv')] });
  assert.equal(dry.isDryRun, true);
  assert.ok(existsSync(uvWheel), 'a dry run touches nothing');

  const real = await call('clean_storage', { paths: [join(home, '.cache/junk-tool')], dry_run: false });
  assert.equal(real.isDryRun, false);
  assert.equal(real.successCount, 1);
  assert.match(real.completedAt, isoStamp);
  assert.ok(!existsSync(junk));
  assert.ok(existsSync(join(home, '.local/share/Trash/files/junk-tool/blob.bin')), 'the item is in the Trash');
  const audit = readFileSync(join(home, '.kestrow/audit.jsonl'), 'utf8').trim().split('\n').map((line) => JSON.parse(line));
  assert.equal(audit.length, 2);
  assert.deepEqual(audit.map((entry) => [entry.client, entry.operationType]), [['mcp', 'dry_run'], ['mcp', 'trash']]);

  const node = await call('inspect_directory', { path: join(home, '.cache'), depth: 1 });
  assert.ok(node.children.some((child) => child.name === 'blobcache'));
  assert.equal(typeof node.lastModifiedDate, 'number');

  const apps = await call('list_apps', {});
  const gizmo = apps.installedApps.find((app) => app.displayName === 'Gizmo');
  assert.ok(gizmo, JSON.stringify(apps.installedApps.map((app) => app.displayName)));
  assert.ok(Array.isArray(apps.leftovers));
  assert.deepEqual((await call('list_apps', { include_leftovers: false })).leftovers, []);

  const uninstall = await call('uninstall_app', { bundle_id_or_name: 'GIZMO' });
  assert.equal(uninstall.dryRun, true);
  assert.equal(typeof uninstall.timestamp, 'number');
  assert.ok(existsSync(appImage), 'a dry-run uninstall moves nothing');
  assert.equal(await call('uninstall_app', { bundle_id_or_name: 'nothing' }, { plain: true, isError: true }),
               "Application not found matching 'nothing'");

  const vitals = await call('get_system_vitals', {});
  assert.match(vitals.timestamp, isoStamp);

  const rules = await call('list_rules', {});
  assert.ok(rules.length > 0 && rules.every((rule) => rule.isBuiltIn));
  assert.equal(typeof rules[0].createdAt, 'number');

  assert.equal(await call('register_rule', { id: 'custom_blobs', name: 'Blobs', pattern: '~/.cache/blobcache/*',
                                            category: 'developerCache', risk_tier: 'SAFE_TO_DELETE' },
                          { plain: true }),
               "Successfully registered rule 'custom_blobs' matching pattern '~/.cache/blobcache/*'");
  const saved = readFileSync(join(home, '.kestrow/rules.json'), 'utf8');
  assert.ok(saved.includes('custom_blobs'));
  assert.ok((await call('list_rules', {})).every((rule) => rule.id !== 'custom_blobs'), 'built-ins only');

  const anomalies = await call('inspect_anomalies', { min_size_mb: 1 });
  assert.ok(Array.isArray(anomalies));
  const blob = anomalies.find((anomaly) => anomaly.path.includes('/.cache/blobcache'));
  assert.ok(blob, JSON.stringify(anomalies.map((anomaly) => anomaly.path)));
  assert.equal(typeof blob.proposedRule.createdAt, 'number');

  console.log('kestrow mcp: the official client listed and called all nine tools');
} finally {
  await client.close();
  rmSync(home, { recursive: true, force: true });
}
